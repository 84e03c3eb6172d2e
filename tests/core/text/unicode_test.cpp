#include "core/text/unicode.h"
#include "difficult_texts.h"

#include <QStringDecoder>

#include <gtest/gtest.h>
#include <unicode/locid.h>

namespace corvandi {
namespace {

/// Makes Turkish the locale that ICU falls back on.
class TurkishDefault {
public:
    TurkishDefault()
    {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(icu::Locale("tr_TR"), status);
    }
    ~TurkishDefault()
    {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(before_, status);
    }
    TurkishDefault(const TurkishDefault&) = delete;
    TurkishDefault& operator=(const TurkishDefault&) = delete;

private:
    icu::Locale before_ = icu::Locale::getDefault();
};

TEST(LetterCase, IsThatOfNoLanguageInParticular)
{
    const TurkishDefault turkish;
    EXPECT_EQ(lowerCased(QStringLiteral("I")), QStringLiteral("i"));
    EXPECT_EQ(upperCased(QStringLiteral("i")), QStringLiteral("I"));
}

TEST(LetterCase, MayChangeTheLength)
{
    EXPECT_EQ(upperCased(QStringLiteral("ß")), QStringLiteral("SS"));
    EXPECT_EQ(lowerCased(QStringLiteral("İ")), QStringLiteral("i\u0307"));
}

TEST(LetterCase, KnowsTheFinalSigma)
{
    EXPECT_EQ(lowerCased(QStringLiteral("ΟΔΟΣ ΣΑΣ")), QStringLiteral("οδος σας"));
}

QString text(const std::u16string& units)
{
    return QStringView(units).toString();
}

/// What is left of "a" between two of these characters.
QString bothTrimmed(char16_t unit)
{
    return trimmedOfWhitespaceAndNewlines(unit + QStringLiteral("a") + unit);
}
QString spacesTrimmed(char16_t unit)
{
    return trimmedOfSpacesAndTabs(unit + QStringLiteral("a") + unit);
}

constexpr std::u16string_view spaces =
    u" \u00a0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200a\u202f\u205f\u3000";
constexpr std::u16string_view newlines = u"\n\v\f\r\u0085\u2028\u2029";
constexpr std::u16string_view others = u"\0\u0008\u000e\u001c\u001f\u0084\u0086\u180e\u200b\u2060\ufeff_.";

TEST(Trimming, SpacesOfEveryKindAndTabsGoEitherWay)
{
    for (const char16_t space : std::u16string(spaces) + u'\t') {
        EXPECT_EQ(bothTrimmed(space), QStringLiteral("a")) << std::hex << unsigned(space);
        EXPECT_EQ(spacesTrimmed(space), QStringLiteral("a")) << std::hex << unsigned(space);
    }
}

TEST(Trimming, LineBreaksGoOnlyWhenTheyAreAskedFor)
{
    for (const char16_t newline : newlines) {
        EXPECT_EQ(bothTrimmed(newline), QStringLiteral("a")) << std::hex << unsigned(newline);
        EXPECT_EQ(spacesTrimmed(newline).size(), 3) << std::hex << unsigned(newline);
    }
}

TEST(Trimming, OtherInvisibleCharactersStay)
{
    for (const char16_t other : others) {
        EXPECT_EQ(bothTrimmed(other).size(), 3) << std::hex << unsigned(other);
        EXPECT_EQ(spacesTrimmed(other).size(), 3) << std::hex << unsigned(other);
    }
}

TEST(Trimming, OnlyTheEndsAreTrimmed)
{
    EXPECT_EQ(trimmedOfWhitespaceAndNewlines(text(u" \n a \n b \t\n")), text(u"a \n b"));
    EXPECT_EQ(trimmedOfSpacesAndTabs(text(u" \t\n a ")), text(u"\n a"));
}

TEST(Trimming, ATextOfWhiteSpaceAloneBecomesEmpty)
{
    EXPECT_TRUE(trimmedOfWhitespaceAndNewlines(text(u"\n   \r\n")).isEmpty());
    EXPECT_TRUE(trimmedOfSpacesAndTabs(text(u" \t ")).isEmpty());
    EXPECT_TRUE(trimmedOfWhitespaceAndNewlines(QString()).isEmpty());
}

TEST(CharacterCount, CountsWhatAPersonSees)
{
    EXPECT_EQ(characterCount(QString()), 0);
    EXPECT_EQ(characterCount(text(u"abc")), 3);
    EXPECT_EQ(characterCount(text(u"e\u0301")), 1);
    EXPECT_EQ(characterCount(text(u"\U0001F469\u200d\U0001F680\U0001F1E9\U0001F1EA")), 2);
    EXPECT_EQ(characterCount(text(u"\r\n")), 1);
}

TEST(CharacterCount, BrokenTextsCanBeCounted)
{
    EXPECT_EQ(characterCount(text(u"\u0301")), 1);
    EXPECT_EQ(characterCount(text(u"a\xd83d"
                                  u"b")),
              3);
}

TEST(ValidText, ALoneHalfOfAPairBecomesTheReplacementCharacter)
{
    EXPECT_EQ(withValidSurrogates(text(u"a\xd83d"
                                       u"b")),
              text(u"a\ufffd"
                   u"b"));
    EXPECT_EQ(withValidSurrogates(text(u"a\xde00"
                                       u"b")),
              text(u"a\ufffd"
                   u"b"));
}

TEST(ValidText, AHalfAtEitherEndBecomesTheReplacementCharacter)
{
    EXPECT_EQ(withValidSurrogates(text(u"\xde00"
                                       u"ab\xd83d")),
              text(u"\ufffd"
                   u"ab\ufffd"));
}

TEST(ValidText, HalvesInTheWrongOrderAreTwoLoneOnes)
{
    EXPECT_EQ(withValidSurrogates(text(u"\xde00\xd83d")), text(u"\ufffd\ufffd"));
}

TEST(ValidText, APairAfterALoneHalfStays)
{
    EXPECT_EQ(withValidSurrogates(text(u"\xd83d\xd83d\xde00\xde00")), text(u"\ufffd\U0001F600\ufffd"));
}

TEST(ValidText, AllHalvesCount)
{
    for (const char16_t half : {u'\xd800', u'\xdbff', u'\xdc00', u'\xdfff'})
        EXPECT_EQ(withValidSurrogates(QString(QChar(half))), text(u"\ufffd"));
    for (const char16_t other : {u'\xd7ff', u'\xe000'})
        EXPECT_EQ(withValidSurrogates(QString(QChar(other))), QString(QChar(other)));
}

TEST(ValidText, AValidTextIsReturnedAsItIs)
{
    const QString valid = text(u"a\U0001F600\u0301");
    EXPECT_TRUE(withValidSurrogates(valid).isSharedWith(valid));
    EXPECT_EQ(withValidSurrogates(QString()), QString());
}

TEST(ValidText, EveryResultSurvivesUtf8)
{
    testing::DifficultTexts texts(1);
    for (int i = 0; i < 2000; ++i) {
        const QString valid = withValidSurrogates(texts.next(8));
        EXPECT_TRUE(valid.isValidUtf16());
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
        EXPECT_EQ(QString(decoder(valid.toUtf8())), valid);
    }
}

} // namespace
} // namespace corvandi
