#include "core/text/vocab_replacer.h"

#include "core/text/unicode.h"
#include "difficult_texts.h"
#include "support/plain_rules.h"

#include <gtest/gtest.h>

#include <unicode/uchar.h>
#include <unicode/uniset.h>

#include <utility>

namespace corvandi {
namespace {

using testing::appliedPlainly;
using testing::DifficultTexts;

QString character(UChar32 scalar)
{
    return QStringView(QChar::fromUcs4(static_cast<char32_t>(scalar))).toString();
}

std::string fast(const std::vector<VocabRule>& rules, const QString& text)
{
    return VocabReplacer().apply(rules, text).toStdString();
}
std::string plain(const std::vector<VocabRule>& rules, const QString& text)
{
    return appliedPlainly(rules, text).toStdString();
}

std::vector<VocabRule> nextRules(DifficultTexts& texts)
{
    std::vector<VocabRule> rules(texts.below(5));
    for (VocabRule& rule : rules)
        rule = {QUuid(), withValidSurrogates(texts.next(3)), withValidSurrogates(texts.next(3))};
    return rules;
}

TEST(VocabReplacerProperties, RulesGiveWhatRegularExpressionsGive)
{
    DifficultTexts texts(5);
    for (int i = 0; i < 20'000; ++i) {
        const QString text = withValidSurrogates(texts.next(14));
        const std::vector<VocabRule> rules = nextRules(texts);
        ASSERT_EQ(fast(rules, text), plain(rules, text)) << "text " << i;
    }
}

/// Characters that folding changes or makes, alone and within their foldings.
icu::UnicodeSet charactersWithCase()
{
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeSet set(u"[[:Changes_When_Casefolded:][:Cased:][:CWL:][:CWU:][:CWT:]\\u0345\\u0307\\u02bc]",
                        status);
    EXPECT_TRUE(U_SUCCESS(status));
    return set;
}

TEST(VocabReplacerProperties, EachLetterMatchesWhatItMatchesInARegularExpression)
{
    const icu::UnicodeSet letters = charactersWithCase();
    for (int32_t i = 0; i < letters.size(); ++i) {
        const QString letter = character(letters.charAt(i));
        icu::UnicodeSet similar(letters.charAt(i), letters.charAt(i));
        similar.closeOver(USET_CASE_INSENSITIVE);
        QString text = letter.toLower() + QLatin1Char(' ') + letter.toUpper() + QLatin1Char(' ') +
                       withValidSurrogates(letter.toUpper().left(1));
        for (int32_t j = 0; j < similar.size() && similar.charAt(j) >= 0; ++j)
            text += QLatin1Char(' ') + character(similar.charAt(j));
        const std::vector<VocabRule> rules = {{QUuid(), letter, QStringLiteral("-")}};
        EXPECT_EQ(fast(rules, text), plain(rules, text));
    }
}

TEST(VocabReplacerProperties, EachCharacterIsPartOfAWordOrNotAsInARegularExpression)
{
    QString before;
    QString behind;
    for (UChar32 scalar = 0; scalar <= UCHAR_MAX_VALUE; ++scalar) {
        const auto type = u_charType(scalar);
        const bool isOneOfMany = scalar % 64 != 0 && (type == U_OTHER_LETTER || type == U_UNASSIGNED ||
                                                      type == U_PRIVATE_USE_CHAR);
        if (isOneOfMany || type == U_SURROGATE)
            continue;
        before += character(scalar) + QStringLiteral("ok ");
        behind += QStringLiteral("ok") + character(scalar) + QLatin1Char(' ');
    }
    const std::vector<VocabRule> rules = {{QUuid(), QStringLiteral("ok"), QStringLiteral("-")}};
    EXPECT_TRUE(VocabReplacer().apply(rules, before) == appliedPlainly(rules, before));
    EXPECT_TRUE(VocabReplacer().apply(rules, behind) == appliedPlainly(rules, behind));
}

TEST(VocabReplacerProperties, RulesThatMatchNothingLeaveTheTextAlone)
{
    DifficultTexts texts(6);
    const std::vector<VocabRule> rules = {{QUuid(), QStringLiteral("absent"), QStringLiteral("x")},
                                          {QUuid(), QString(), QStringLiteral("y")},
                                          {QUuid(), QStringLiteral("\u2603"), QStringLiteral("z")}};
    for (int i = 0; i < 5000; ++i) {
        const QString text = withValidSurrogates(texts.next(20));
        EXPECT_EQ(VocabReplacer().apply(rules, text), text);
    }
}

TEST(VocabReplacerProperties, TheReplacementArrivesAsItIsWritten)
{
    DifficultTexts texts(7);
    for (int i = 0; i < 5000; ++i) {
        const QString to = withValidSurrogates(texts.next(5));
        EXPECT_EQ(VocabReplacer().apply({{QUuid(), QStringLiteral("here"), to}}, QStringLiteral("- HERE -")),
                  QStringLiteral("- ") + to + QStringLiteral(" -"));
    }
}

TEST(VocabReplacerProperties, AllRulesTogetherGiveWhatTheyGiveOneByOne)
{
    DifficultTexts texts(8);
    for (int i = 0; i < 5000; ++i) {
        const QString text = texts.next(14);
        const std::vector<VocabRule> rules = nextRules(texts);
        QString oneByOne = withValidSurrogates(text);
        for (const VocabRule& rule : rules)
            oneByOne = VocabReplacer().apply({rule}, oneByOne);
        EXPECT_EQ(VocabReplacer().apply(rules, text), oneByOne);
    }
}

TEST(VocabReplacerProperties, WhatIsKeptFromBeforeChangesNothing)
{
    DifficultTexts texts(9);
    VocabReplacer kept;
    for (int i = 0; i < 500; ++i) {
        const std::vector<VocabRule> rules = nextRules(texts);
        for (int j = 0; j < 5; ++j) {
            const QString text = texts.next(14);
            EXPECT_EQ(kept.apply(rules, text), VocabReplacer().apply(rules, text));
        }
    }
}

TEST(VocabReplacerProperties, BrokenTextsAndRulesGiveValidTexts)
{
    DifficultTexts texts(10);
    for (int i = 0; i < 5000; ++i) {
        std::vector<VocabRule> rules(texts.below(5));
        for (VocabRule& rule : rules)
            rule = {QUuid(), texts.next(2), texts.next(2)};
        EXPECT_TRUE(VocabReplacer().apply(rules, texts.next(14)).isValidUtf16());
    }
}

} // namespace
} // namespace corvandi
