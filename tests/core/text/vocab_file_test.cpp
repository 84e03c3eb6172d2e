#include "core/text/vocab_book.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvandi {
namespace {

using ::testing::IsEmpty;

const QUuid id = QUuid::fromString(QStringLiteral("0123abcd-4567-89ef-abcd-ef0123456789"));
const QByteArray rule = R"({"id":"0123ABCD-4567-89EF-ABCD-EF0123456789","from":"ok","to":"O/K"})";
const QByteArray app = R"({"bundleID":"org.editor","name":"Editor","rules":[)" + rule + "]}";
const QByteArray whole = R"({"global":[)" + rule + R"(],"apps":[)" + app + "]}";

VocabBook wholeBook()
{
    const std::vector<VocabRule> rules{{id, QStringLiteral("ok"), QStringLiteral("O/K")}};
    return {rules, {{QStringLiteral("org.editor"), QStringLiteral("Editor"), rules}}};
}

TEST(VocabFile, IsCompactWithTheKeysInTheirOrder)
{
    EXPECT_EQ(wholeBook().encoded(), whole);
    EXPECT_EQ(VocabBook().encoded(), R"({"global":[],"apps":[]})");
}

TEST(VocabFile, IsReadAsItWasWritten)
{
    const auto decoded = VocabBook::decoded(whole);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->book, wholeBook());
    EXPECT_FALSE(decoded->migrated);
}

TEST(VocabFile, EveryTextSurvives)
{
    VocabBook book = wholeBook();
    book.global.push_back({QUuid::createUuid(), QString(), QString()});
    book.global.push_back(
        {QUuid::createUuid(), QStringLiteral("a\n\"\\\t"), QString::fromUtf8("日本 é 😀 $1")});
    book.apps.push_back({QString(), QString::fromUtf8("Éditeur"), {}});
    book.apps.push_back(book.apps.front());
    const auto decoded = VocabBook::decoded(book.encoded());
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->book, book);
}

TEST(VocabFile, ABareArrayOfRulesIsTheEarlierFormOfTheGlobalRules)
{
    const auto decoded = VocabBook::decoded("[" + rule + "," + rule + "]");
    ASSERT_TRUE(decoded);
    EXPECT_TRUE(decoded->migrated);
    EXPECT_EQ(decoded->book.global.size(), 2U);
    EXPECT_EQ(decoded->book.global[0], wholeBook().global[0]);
    EXPECT_THAT(decoded->book.apps, IsEmpty());
}

TEST(VocabFile, AnEmptyArrayIsTheEarlierFormOfAnEmptyBook)
{
    const auto decoded = VocabBook::decoded("[]");
    ASSERT_TRUE(decoded);
    EXPECT_TRUE(decoded->migrated);
    EXPECT_EQ(decoded->book, VocabBook());
}

TEST(VocabFile, UnknownKeysAreIgnored)
{
    const auto decoded = VocabBook::decoded(
        R"({"version":2,"apps":[{"rules":[],"icon":null,"name":"n","bundleID":"b"}],)"
        R"("global":[{"to":"t","from":"f","id":"0123abcd-4567-89EF-ABCD-ef0123456789","on":true}]})");
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->book, (VocabBook{{{id, QStringLiteral("f"), QStringLiteral("t")}},
                                        {{QStringLiteral("b"), QStringLiteral("n"), {}}}}));
    EXPECT_FALSE(decoded->migrated);
}

TEST(VocabFile, WhateverIsMissingOrOfTheWrongTypeMakesTheWholeFileUnreadable)
{
    const QByteArray goodApp = R"({"bundleID":"b","name":"n","rules":[]})";
    ASSERT_TRUE(VocabBook::decoded(R"({"global":[],"apps":[)" + goodApp + "]}"));
    for (const char* bad :
         {R"({"name":"n","rules":[]})", R"({"bundleID":"b","rules":[]})", R"({"bundleID":"b","name":"n"})",
          R"({"bundleID":1,"name":"n","rules":[]})", R"({"bundleID":"b","name":null,"rules":[]})",
          R"({"bundleID":"b","name":"n","rules":{}})", R"({"bundleID":"b","name":"n","rules":[1]})", "[]",
          "null"})
        EXPECT_FALSE(VocabBook::decoded(R"({"global":[],"apps":[)" + goodApp + "," + bad + "]}")) << bad;
    for (const char* bad :
         {R"({"from":"a","to":"b"})", R"({"id":"0123ABCD-4567-89EF-ABCD-EF0123456789","to":"b"})",
          R"({"id":"0123ABCD-4567-89EF-ABCD-EF0123456789","from":"a"})", R"({"id":"1","from":"a","to":"b"})",
          R"({"id":"0123ABCD-4567-89EF-ABCD-EF0123456789","from":1,"to":"b"})",
          R"({"id":"0123ABCD-4567-89EF-ABCD-EF0123456789","from":"a","to":false})", "\"a\""}) {
        EXPECT_FALSE(VocabBook::decoded(R"({"global":[)" + rule + "," + bad + R"(],"apps":[]})")) << bad;
        EXPECT_FALSE(VocabBook::decoded("[" + rule + "," + bad + "]")) << bad;
    }
}

TEST(VocabFile, NothingElseIsAVocabulary)
{
    for (const char* bytes :
         {"", " ", "{}", R"({"global":[]})", R"({"apps":[]})", R"({"global":{},"apps":[]})",
          R"({"global":[],"apps":null})", R"({"Global":[],"Apps":[]})", "null", "true", "0", "\"\"", "[1]",
          "[[]]", "[] []", "[],", "{\"global\":[],\"apps\":[]} x", "\xEF\xBB\xBF[]", "[/**/]"})
        EXPECT_FALSE(VocabBook::decoded(bytes)) << bytes;
}

TEST(VocabFile, HostileBytesAreJustUnreadable)
{
    EXPECT_FALSE(VocabBook::decoded(QByteArray(10'000'000, '[')));
    EXPECT_FALSE(VocabBook::decoded(QByteArray(10'000'000, '{')));
    EXPECT_FALSE(VocabBook::decoded(QByteArray(1'000'000, '\0')));
    EXPECT_FALSE(VocabBook::decoded(QByteArray(1'000'000, '\xFF')));
}

} // namespace
} // namespace corvandi
