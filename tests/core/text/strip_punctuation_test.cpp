#include "core/text/post_processor.h"

#include "core/text/unicode.h"
#include "difficult_texts.h"

#include <gtest/gtest.h>

#include <unicode/uchar.h>
#include <unicode/uniset.h>

namespace corvandi {
namespace {

std::string stripped(const std::u16string& text)
{
    return PostProcessor::stripPunctuation(QStringView(text).toString()).toStdString();
}

QString character(UChar32 scalar)
{
    return QStringView(QChar::fromUcs4(static_cast<char32_t>(scalar))).toString();
}

TEST(StripPunctuation, KeepsWhatStandsInsideAWordOrNumberAndLowerCasesAll)
{
    EXPECT_EQ(stripped(u"Don't stop, e-mail me at 3.5!"), "don't stop e-mail me at 3.5");
}

TEST(StripPunctuation, ALeadingApostropheAndATrailingFullStopGo)
{
    EXPECT_EQ(stripped(u"'tis so."), "tis so");
    EXPECT_EQ(stripped(u"."), "");
    EXPECT_EQ(stripped(u"'a"), "a");
    EXPECT_EQ(stripped(u"a'"), "a");
}

TEST(StripPunctuation, AnEmptyTextStaysEmpty)
{
    EXPECT_EQ(stripped(u""), "");
}

TEST(StripPunctuation, PunctuationOfEveryKindGoes)
{
    // A connector, a dash, brackets, quotation marks, others; the last one beyond the basic plane.
    EXPECT_EQ(
        stripped(u"a _ - \u2013 ( ) [ ] \u00ab \u00bb \u2018 \u2019 ! \u00bf \u2026 \u3001 % & @ * # / \\ "
                 u"\U00010100 b"),
        "a                        b");
}

TEST(StripPunctuation, SymbolsStay)
{
    EXPECT_EQ(stripped(u"$ + < = > ^ ` | ~ \u20ac \u00b0 \U0001F600"),
              "$ + < = > ^ ` | ~ \u20ac \u00b0 \U0001F600");
}

TEST(StripPunctuation, WhiteSpaceStays)
{
    EXPECT_EQ(stripped(u" a .\n\t b. "), " a \n\t b ");
}

TEST(StripPunctuation, LettersMarksAndNumbersMakeAWord)
{
    EXPECT_EQ(stripped(u"a.b"), "a.b");
    EXPECT_EQ(stripped(u"1.2"), "1.2");
    EXPECT_EQ(stripped(u"e\u0301.e"), "e\u0301.e");
    EXPECT_EQ(stripped(u"\u2163.\u00b2"), "\u2173.\u00b2");
    EXPECT_EQ(stripped(u"\u05e9.\u4e2d"), "\u05e9.\u4e2d");
    EXPECT_EQ(stripped(u"a_b"), "a_b");
}

TEST(StripPunctuation, BothNeighboursMustBelongToTheWord)
{
    EXPECT_EQ(stripped(u"a. b"), "a b");
    EXPECT_EQ(stripped(u"a .b"), "a b");
    EXPECT_EQ(stripped(u"$.5 5.$"), "$5 5$");
    EXPECT_EQ(stripped(u"a--b a...b"), "ab ab");
    EXPECT_EQ(stripped(u"a'\U0001F600'b"), "a\U0001F600b");
}

TEST(StripPunctuation, WhatLiesInMemoryAroundTheTextIsNoNeighbour)
{
    const QString around = QStringLiteral("a'b");
    EXPECT_EQ(PostProcessor::stripPunctuation(QString::fromRawData(around.constData() + 1, 2)),
              QStringLiteral("b"));
    EXPECT_EQ(PostProcessor::stripPunctuation(QString::fromRawData(around.constData(), 2)),
              QStringLiteral("a"));
}

TEST(StripPunctuation, TheNeighboursInTheGivenTextCountNotThoseThatAreLeft)
{
    EXPECT_EQ(stripped(u"a,\"b"), "ab");
}

TEST(StripPunctuation, NeighboursAreScalarsNotUnits)
{
    EXPECT_EQ(stripped(u"\U00010428.\U00010428"), "\U00010428.\U00010428");
    EXPECT_EQ(stripped(u"a\U00010100b"), "a\U00010100b");
    EXPECT_EQ(stripped(u"\U00010100b"), "b");
}

TEST(StripPunctuation, TheWholeTextIsLowerCasedByTheRulesOfNoLanguage)
{
    EXPECT_EQ(stripped(u"SO I Said: \u00c4\u00d6"), "so i said \u00e4\u00f6");
    EXPECT_EQ(stripped(u"\u0130"), "i\u0307");
}

TEST(StripPunctuation, LowerCasingSeesTheWordsThatAreLeft)
{
    // A sigma is a final one if a word ends behind it.
    EXPECT_EQ(stripped(u"\u039f\u03a3."), "\u03bf\u03c2");
    EXPECT_EQ(stripped(u"\u039f\u03a3--\u0391"), "\u03bf\u03c3\u03b1");
}

TEST(StripPunctuation, KnowsUnicodesPunctuationExactly)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeSet punctuation(u"[[:Pc:][:Pd:][:Ps:][:Pe:][:Pi:][:Pf:][:Po:]]", status);
    ASSERT_TRUE(U_SUCCESS(status));
    for (UChar32 scalar = 0; scalar < 0x20000; ++scalar) {
        if (u_charType(scalar) == U_UNASSIGNED || U_IS_SURROGATE(scalar))
            continue;
        const QString text = QStringLiteral(" ") + character(scalar);
        EXPECT_EQ(PostProcessor::stripPunctuation(text).size() == 1, punctuation.contains(scalar) != 0)
            << std::hex << scalar;
    }
}

TEST(StripPunctuation, KnowsUnicodesLettersMarksAndNumbersExactly)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeSet alphanumeric(u"[[:L:][:M:][:N:]]", status);
    ASSERT_TRUE(U_SUCCESS(status));
    for (UChar32 scalar = 0; scalar < 0x20000; ++scalar) {
        if (u_charType(scalar) == U_UNASSIGNED || U_IS_SURROGATE(scalar))
            continue;
        const QString text = QStringLiteral("a.") + character(scalar);
        EXPECT_EQ(PostProcessor::stripPunctuation(text).contains(QStringLiteral("a.")),
                  alphanumeric.contains(scalar) != 0)
            << std::hex << scalar;
    }
}

TEST(StripPunctuation, AnyTextSurvives)
{
    testing::DifficultTexts texts(4);
    for (int i = 0; i < 5000; ++i) {
        const QString text = withValidSurrogates(texts.next(12));
        EXPECT_TRUE(PostProcessor::stripPunctuation(text).isValidUtf16());
        (void)PostProcessor::stripPunctuation(texts.next(12));
    }
}

TEST(StripPunctuation, ALoneHalfOfAPairStays)
{
    const QString half = QString(QChar(0xd83d));
    EXPECT_EQ(PostProcessor::stripPunctuation(half), half);
    EXPECT_EQ(PostProcessor::stripPunctuation(half + QStringLiteral(".a")), half + QStringLiteral("a"));
}

TEST(PostProcessor, TakesOnlyTheStepsThatAreWanted)
{
    const QString text = QStringLiteral("Um, Well , it's  OK.");
    const auto processed = [&](const PostProcessor::Options& options) {
        return PostProcessor::process(text, options).toStdString();
    };
    EXPECT_EQ(processed({.removeDisfluencies = false, .keepPunctuation = true}), text.toStdString());
    EXPECT_EQ(processed({.removeDisfluencies = true, .keepPunctuation = true}), "Well, it's OK.");
    EXPECT_EQ(processed({.removeDisfluencies = false, .keepPunctuation = false}), "um well  it's  ok");
    EXPECT_EQ(processed({.removeDisfluencies = true, .keepPunctuation = false}), "well it's ok");
}

TEST(PostProcessor, RemovesFillersBeforePunctuation)
{
    const PostProcessor::Options both{.removeDisfluencies = true, .keepPunctuation = false};
    EXPECT_EQ(PostProcessor::process(QStringLiteral("a um.b"), both), QStringLiteral("a b"));
    EXPECT_EQ(PostProcessor::process(QStringLiteral("u'm a"), both), QStringLiteral("u'm a"));
    EXPECT_EQ(PostProcessor::process(QStringLiteral("u--m a"), both), QStringLiteral("um a"));
}

} // namespace
} // namespace corvandi
