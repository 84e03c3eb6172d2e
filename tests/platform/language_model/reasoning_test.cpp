#include "platform/linux/language_model/reasoning.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

QString rest(const char* answer)
{
    return withoutReasoning(QString::fromUtf8(answer));
}

TEST(ReasoningTest, AnAnswerWithoutAnyIsLeftAsItIs)
{
    EXPECT_EQ(rest(" Hello.\n"), QStringLiteral(" Hello.\n"));
    EXPECT_EQ(rest(""), QString());
}

TEST(ReasoningTest, WhatStandsBeforeTheTextGoes)
{
    EXPECT_EQ(rest("<think>\nHm.\n</think>\n\nHello."), QStringLiteral("\n\nHello."));
    EXPECT_EQ(rest(" \n<think></think>Hello."), QStringLiteral("Hello."));
}

TEST(ReasoningTest, SeveralPiecesGo)
{
    EXPECT_EQ(rest("<think>a</think> <think>b</think>Hello."), QStringLiteral("Hello."));
}

TEST(ReasoningTest, AnOpeningTagThatIsMissingIsMadeUpFor)
{
    EXPECT_EQ(rest("Hm.</think>Hello."), QStringLiteral("Hello."));
}

TEST(ReasoningTest, ReasoningWithoutAnEndLeavesNothing)
{
    EXPECT_EQ(rest("<think>Hm, so Hello."), QString());
}

TEST(ReasoningTest, TagsWithinTheTextBelongToIt)
{
    EXPECT_EQ(rest("The tags <think> and </think>."), QStringLiteral("The tags <think> and </think>."));
    EXPECT_EQ(rest("<think>a</think>The tag </think>."), QStringLiteral("The tag </think>."));
}

} // namespace
} // namespace corvandi
