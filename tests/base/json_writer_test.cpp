#include "base/json_writer.h"

#include "base/error.h"
#include "base/json_reading.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace corvandi {
namespace {

template<class T>
QByteArray written(const T& value)
{
    JsonWriter writer;
    writer.value(value);
    return writer.json();
}

TEST(JsonWriter, WritesCompactlyInTheOrderOfTheCalls)
{
    JsonWriter writer;
    writer.beginObject();
    writer.key("z");
    writer.beginArray();
    writer.value(1);
    writer.value(2);
    writer.beginObject();
    writer.endObject();
    writer.endArray();
    writer.member("a", QStringLiteral("b"));
    writer.key("none");
    writer.beginArray();
    writer.endArray();
    writer.endObject();
    EXPECT_EQ(writer.json(), R"({"z":[1,2,{}],"a":"b","none":[]})");
}

TEST(JsonWriter, EscapesOnlyWhatMustBe)
{
    EXPECT_EQ(written(QStringLiteral("a/b")), "\"a/b\"");
    EXPECT_EQ(written(QStringLiteral("\"\\\b\f\n\r\t")), R"("\"\\\b\f\n\r\t")");
    EXPECT_EQ(written(QString(QChar(0)) + QChar(1) + QChar(0x1F)), R"("\u0000\u0001\u001f")");
    EXPECT_EQ(written(QString(QChar(0x7F)) + QChar(0x2028)), "\"\x7F\xE2\x80\xA8\"");
    EXPECT_EQ(written(QStringLiteral("é日本😀")), "\"é日本😀\"");
    EXPECT_EQ(written(QString()), "\"\"");
}

TEST(JsonWriter, ALoneSurrogateBecomesTheReplacementCharacter)
{
    const QChar high(0xD83D);
    const QChar low(0xDE00);
    EXPECT_EQ(written(QString(high)), "\"\uFFFD\"");
    EXPECT_EQ(written(QString(low) + high), "\"\uFFFD\uFFFD\"");
    EXPECT_EQ(written(QString(high) + QLatin1Char('a')), "\"\uFFFDa\"");
    EXPECT_EQ(written(QString(high) + low), "\"😀\"");
}

TEST(JsonWriter, WholeNumbersHaveNoFractionAndNoExponent)
{
    EXPECT_EQ(written(0.0), "0");
    EXPECT_EQ(written(-0.0), "0");
    EXPECT_EQ(written(86400.0), "86400");
    EXPECT_EQ(written(100000.0), "100000");
    EXPECT_EQ(written(-978307200.0), "-978307200");
    EXPECT_EQ(written(9007199254740991.0), "9007199254740991");
}

TEST(JsonWriter, OtherNumbersHaveTheirShortestForm)
{
    EXPECT_EQ(written(0.1), "0.1");
    EXPECT_EQ(written(-0.5), "-0.5");
    EXPECT_EQ(written(774360000.123), "774360000.123");
    EXPECT_EQ(written(1e300), "1e+300");
}

TEST(JsonWriter, EveryFiniteNumberReadsBackTheSame)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 100'000; ++i) {
        const auto number = std::bit_cast<double>(random());
        if (!std::isfinite(number))
            continue;
        const QByteArray json = "{\"n\":" + written(number) + "}";
        ASSERT_EQ(numberMember(parseJson(json), "n"), number) << json.constData();
    }
}

TEST(JsonWriter, ThereIsNoFormForOtherNumbers)
{
    for (const double number :
         {std::nan(""), std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()})
        EXPECT_THROW((void)written(number), Error);
}

TEST(JsonWriter, UuidsAreInUpperCase)
{
    const QUuid id = QUuid::fromString(QStringLiteral("0123abcd-4567-89ef-abcd-ef0123456789"));
    EXPECT_EQ(written(id), "\"0123ABCD-4567-89EF-ABCD-EF0123456789\"");
}

TEST(JsonWriter, LongTextOfEveryKindReadsBackTheSame)
{
    QString text;
    for (int i = 0; i < 20'000; ++i)
        text += i % 7 == 0 ? QStringLiteral("😀") : QString(QChar(1 + i % 0xD000));
    const QByteArray json = "{\"text\":" + written(text) + "}";
    EXPECT_EQ(stringMember(parseJson(json), "text"), text);
}

} // namespace
} // namespace corvandi
