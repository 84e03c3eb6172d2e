#include "core/text/post_processor.h"

#include "core/text/unicode.h"
#include "difficult_texts.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

std::string stripped(const QString& text)
{
    return PostProcessor::stripDisfluencies(text).toStdString();
}
std::string stripped(const std::u16string& text)
{
    return stripped(QStringView(text).toString());
}

TEST(Disfluencies, ALeadingFillerGoesWithItsCommaAndTheTextIsCapitalized)
{
    EXPECT_EQ(stripped(u"Um, hello there"), "Hello there");
}

TEST(Disfluencies, AFillerInTheMiddleGoesWithItsComma)
{
    EXPECT_EQ(stripped(u"So um, I think"), "So I think");
}

TEST(Disfluencies, AFillerAtTheEndGoesWithItsFullStop)
{
    EXPECT_EQ(stripped(u"I think uh."), "I think");
}

TEST(Disfluencies, LetterCaseDoesNotMatter)
{
    EXPECT_EQ(stripped(u"UMM what"), "What");
    EXPECT_EQ(stripped(u"so uH and hMm"), "so and");
}

TEST(Disfluencies, EachFillerIsKnown)
{
    for (const char* filler : {"um", "umm", "uh", "uhh", "erm", "hmm", "mmm"})
        EXPECT_EQ(stripped(QStringLiteral("so %1 yes").arg(QLatin1String(filler))), "so yes") << filler;
}

TEST(Disfluencies, WhatResemblesAFillerStays)
{
    for (const char* word :
         {"ummm", "uhhh", "er", "err",     "ermm",    "hm",    "hmmm", "mm",  "mmmm", "ah",
          "eh",   "m",    "u",  "summary", "humming", "album", "uhm",  "um7", "um_",  "_um"}) {
        const QString text = QStringLiteral("so %1 yes").arg(QLatin1String(word));
        EXPECT_EQ(stripped(text), text.toStdString());
    }
}

TEST(Disfluencies, OnlyACommaOrAFullStopGoesWithAFiller)
{
    EXPECT_EQ(stripped(u"so um; yes"), "so; yes");
    EXPECT_EQ(stripped(u"so um: yes"), "so: yes");
    EXPECT_EQ(stripped(u"so um! yes"), "so! yes");
    EXPECT_EQ(stripped(u"so um? yes"), "so? yes");
    EXPECT_EQ(stripped(u"so um\u2026 yes"), "so \u2026 yes");
}

TEST(Disfluencies, OnlyOneCommaOrFullStopGoesWithAFiller)
{
    EXPECT_EQ(stripped(u"so um,, yes"), "so, yes");
    EXPECT_EQ(stripped(u"so um.. yes"), "so. yes");
    EXPECT_EQ(stripped(u"so um., yes"), "so, yes");
}

TEST(Disfluencies, TheMarkMustFollowTheFillerAtOnce)
{
    EXPECT_EQ(stripped(u"so um , yes"), "so, yes");
}

TEST(Disfluencies, FillersInARowAllGo)
{
    EXPECT_EQ(stripped(u"uh, um, hmm so mmm uhh yes"), "So yes");
}

TEST(Disfluencies, PunctuationIsABoundOfAFiller)
{
    EXPECT_EQ(stripped(u"so-um-yes (uh) 'erm'"), "so--yes () ''");
}

TEST(Disfluencies, ATextOfFillersBecomesEmpty)
{
    EXPECT_EQ(stripped(u"Um."), "");
    EXPECT_EQ(stripped(u"um, uh..."), "");
    EXPECT_EQ(stripped(u""), "");
}

TEST(Disfluencies, SpacesBeforePunctuationGo)
{
    EXPECT_EQ(stripped(u"well , ok"), "well, ok");
    EXPECT_EQ(stripped(u"a , b . c ; d : e ! f ?"), "a, b. c; d: e! f?");
    EXPECT_EQ(stripped(u"a     ,b"), "a,b");
    EXPECT_EQ(stripped(u"a , , b"), "a,, b");
}

TEST(Disfluencies, SpacesBeforeOtherMarksStay)
{
    for (const char16_t mark : std::u16string(u"-(\"'/&\u2026\u00bf)"))
        EXPECT_EQ(stripped(u"a " + std::u16string(1, mark) + u"b"),
                  QStringLiteral("a %1b").arg(QChar(mark)).toStdString());
}

TEST(Disfluencies, OnlySpacesGoBeforePunctuation)
{
    EXPECT_EQ(stripped(u"a\t, b"), "a , b");
    EXPECT_EQ(stripped(u"a\n, b"), "a , b");
    EXPECT_EQ(stripped(u"a\u00a0, b"), "a , b");
    EXPECT_EQ(stripped(u"a\t , b"), "a , b");
}

TEST(Disfluencies, WhiteSpaceOfEveryKindCollapsesToOneSpace)
{
    for (const char16_t space :
         std::u16string(u" \t\n\v\f\r\u0085\u00a0\u1680\u2003\u2028\u2029\u202f\u3000")) {
        EXPECT_EQ(stripped(u"a" + std::u16string(1, space) + u"b"), "a b") << std::hex << unsigned(space);
        EXPECT_EQ(stripped(u"a \n" + std::u16string(2, space) + u"\tb"), "a b")
            << std::hex << unsigned(space);
    }
}

TEST(Disfluencies, WhiteSpaceAtTheEndsGoes)
{
    EXPECT_EQ(stripped(u" \n a b \t"), "a b");
    EXPECT_EQ(stripped(u" \n "), "");
}

TEST(Disfluencies, ATextWithoutFillersIsTidiedButNotCapitalized)
{
    EXPECT_EQ(stripped(u"  hello ,\n there "), "hello, there");
    EXPECT_EQ(stripped(u"summary"), "summary");
}

TEST(Disfluencies, ATextThatDoesNotBeginWithTheFillerIsNotCapitalized)
{
    EXPECT_EQ(stripped(u" um hello"), "hello");
    EXPECT_EQ(stripped(u"\"um hello"), "\" hello");
    EXPECT_EQ(stripped(u"so um hello"), "so hello");
}

TEST(Disfluencies, LeadingPunctuationGoesWithALeadingFiller)
{
    for (const char16_t mark : std::u16string(u",.;:!?")) {
        EXPECT_EQ(stripped(u"um" + std::u16string(2, mark) + u" yes"), "Yes");
        EXPECT_EQ(stripped(u"um" + std::u16string(2, mark) + u"yes"), "Yes");
    }
    EXPECT_EQ(stripped(u"um!?;:,. , yes"), "Yes");
}

TEST(Disfluencies, OtherLeadingMarksStayAfterALeadingFiller)
{
    for (const char16_t mark : std::u16string(u"-('\u2026\u00bf"))
        EXPECT_EQ(stripped(u"um" + std::u16string(1, mark) + u" yes"),
                  QStringLiteral("%1 Yes").arg(QChar(mark)).toStdString());
}

TEST(Disfluencies, LeadingPunctuationStaysWithoutALeadingFiller)
{
    EXPECT_EQ(stripped(u", yes um"), ", yes");
    EXPECT_EQ(stripped(u"so yes um, no"), "so yes no");
}

TEST(Disfluencies, OnlyTheStartLosesItsPunctuation)
{
    EXPECT_EQ(stripped(u"um yes! no."), "Yes! no.");
}

TEST(Disfluencies, TheFirstLetterIsCapitalizedWhereverItStands)
{
    EXPECT_EQ(stripped(u"um 3 apples"), "3 Apples");
    EXPECT_EQ(stripped(u"um \U0001F44D yes"), "\U0001F44D Yes");
    EXPECT_EQ(stripped(u"um 3, 4"), "3, 4");
    EXPECT_EQ(stripped(u"um Yes no"), "Yes no");
    EXPECT_EQ(stripped(u"um \u05e9 yes"), "\u05e9 yes");
}

TEST(Disfluencies, TheCapitalMayBeSeveralCharacters)
{
    EXPECT_EQ(stripped(u"um \u00dfa"), "SSa");
    EXPECT_EQ(stripped(u"um \ufb01n"), "FIn");
}

TEST(Disfluencies, TheFirstLetterIsCapitalizedWithItsMarks)
{
    EXPECT_EQ(stripped(u"um e\u0301a"), "E\u0301a");
    EXPECT_EQ(stripped(u"um \u0390a"), "\u0399\u0308\u0301a");
    // As one character the letter has the iota of its mark in upper case, too.
    EXPECT_EQ(stripped(u"um \u03b1\u0345a"), "\u0391\u0399a");
}

TEST(Disfluencies, ALetterBeyondTheBasicPlaneIsCapitalized)
{
    EXPECT_EQ(stripped(u"um \U00010428\U00010428"), "\U00010400\U00010428");
}

TEST(Disfluencies, ALoneMarkIsNoLetterButAnAlphabeticOneIs)
{
    EXPECT_EQ(stripped(u"um \u0301 yes"), "\u0301 Yes");
}

TEST(Disfluencies, AnAccentAtTheEndMakesItAnotherWord)
{
    EXPECT_EQ(stripped(u"so um\u0301a yes"), "so um\u0301a yes");
}

TEST(Disfluencies, AByteOrderMarkIsNotTakenAway)
{
    EXPECT_EQ(PostProcessor::stripDisfluencies(QStringLiteral("\ufeffa")), QStringLiteral("\ufeffa"));
    EXPECT_EQ(PostProcessor::stripDisfluencies(QStringLiteral("\ufffea")), QStringLiteral("\ufffea"));
}

TEST(Disfluencies, LongRunsOfTheSameAreNoTrouble)
{
    const QString spaces(300'000, QLatin1Char(' '));
    EXPECT_EQ(stripped(QStringLiteral("a") + spaces + QStringLiteral("b")), "a b");
    EXPECT_EQ(stripped(spaces), "");
    const QString commas(300'000, QLatin1Char(','));
    EXPECT_EQ(stripped(QStringLiteral("um") + commas + QStringLiteral("b")), "B");
    EXPECT_EQ(stripped(QStringLiteral("um ").repeated(100'000)), "");
    const QString marks(300'000, QChar(0x0301));
    EXPECT_EQ(PostProcessor::stripDisfluencies(QStringLiteral("um, a") + marks).size(), marks.size() + 1);
}

TEST(Disfluencies, AnyTextSurvives)
{
    testing::DifficultTexts texts(3);
    for (int i = 0; i < 5000; ++i) {
        const QString text = withValidSurrogates(texts.next(12));
        const QString result = PostProcessor::stripDisfluencies(text);
        EXPECT_TRUE(result.isValidUtf16());
        EXPECT_EQ(result, trimmedOfWhitespaceAndNewlines(result));
        EXPECT_FALSE(result.contains(QStringLiteral("  ")));
        (void)PostProcessor::stripDisfluencies(texts.next(12));
    }
}

} // namespace
} // namespace corvandi
