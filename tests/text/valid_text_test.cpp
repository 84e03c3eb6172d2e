#include "text/valid_text.h"

#include "difficult_texts.h"

#include <QStringDecoder>

#include <gtest/gtest.h>

namespace corvandi {
namespace {

QString text(const std::u16string& units)
{
    return QStringView(units).toString();
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
