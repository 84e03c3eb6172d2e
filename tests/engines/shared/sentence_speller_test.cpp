#include "engines/shared/recognition_run.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

TEST(SentenceSpeller, BeginsWithACapitalAndEndsWithAFullStop)
{
    SentenceSpeller speller;
    EXPECT_EQ(speller.add(QStringLiteral("go forward ten meters"), 0ms),
              QStringLiteral("Go forward ten meters"));
    EXPECT_EQ(speller.finish(), QStringLiteral("."));
}

TEST(SentenceSpeller, AShortPauseOnlyParts)
{
    SentenceSpeller speller;
    (void)speller.add(QStringLiteral("hello"), 0ms);
    EXPECT_EQ(speller.add(QStringLiteral("world"), 500ms), QStringLiteral(" world"));
}

TEST(SentenceSpeller, ALongPauseBeginsASentence)
{
    SentenceSpeller speller;
    (void)speller.add(QStringLiteral("hello"), 0ms);
    EXPECT_EQ(speller.add(QStringLiteral("how are you"), 700ms), QStringLiteral(". How are you"));
}

TEST(SentenceSpeller, ALongPauseBeforeTheFirstWordsIsNoSentence)
{
    SentenceSpeller speller;
    EXPECT_EQ(speller.add(QStringLiteral("hello"), 5s), QStringLiteral("Hello"));
}

TEST(SentenceSpeller, PausesAroundWordlessNoiseAddUp)
{
    SentenceSpeller speller;
    (void)speller.add(QStringLiteral("hello"), 0ms);
    EXPECT_EQ(speller.add(QString(), 450ms), QString());
    EXPECT_EQ(speller.add(QStringLiteral("again"), 450ms), QStringLiteral(". Again"));
}

TEST(SentenceSpeller, SpellsTheWordIWithACapitalWhereverItStands)
{
    SentenceSpeller speller;
    EXPECT_EQ(speller.add(QStringLiteral("if i can i'll do what i've said in it"), 0ms),
              QStringLiteral("If I can I'll do what I've said in it"));
}

TEST(SentenceSpeller, SaysNothingWhenNothingWasSaid)
{
    SentenceSpeller speller;
    EXPECT_EQ(speller.add(QString(), 0ms), QString());
    EXPECT_EQ(speller.finish(), QString());
}

TEST(SentenceSpeller, SurplusSpacesDontShow)
{
    SentenceSpeller speller;
    EXPECT_EQ(speller.add(QStringLiteral("  two  words "), 0ms), QStringLiteral("Two words"));
}

} // namespace
} // namespace corvandi
