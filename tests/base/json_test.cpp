#include "base/error.h"
#include "base/json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <optional>
#include <random>

namespace corvandi {
namespace {

/// The description of the error that reading gives; nothing when there is none.
std::optional<QString> refusal(const QByteArray& bytes)
{
    try {
        (void)parseJson(bytes);
    } catch (const Error& error) {
        return error.description();
    }
    return std::nullopt;
}

QByteArray nested(int depth)
{
    return QByteArray(depth, '[') + QByteArray(depth, ']');
}

struct Case {
    const char* name;
    QByteArray bytes;
};

void PrintTo(const Case& example, std::ostream* out)
{
    *out << example.name;
}

std::string nameOf(const ::testing::TestParamInfo<Case>& info)
{
    return info.param.name;
}

class NotJson : public ::testing::TestWithParam<Case> {};

TEST_P(NotJson, IsRefused)
{
    EXPECT_TRUE(refusal(GetParam().bytes).has_value());
}

INSTANTIATE_TEST_SUITE_P(
    AnythingElse, NotJson,
    ::testing::Values(
        Case{"nothing", ""}, Case{"whiteSpace", " \n"}, Case{"aWord", "history"}, Case{"anOpenArray", "["},
        Case{"anOpenString", "[\"a"}, Case{"anotherDocumentBehind", "[][]"}, Case{"wordsBehind", "[] end"},
        Case{"aTrailingComma", "[1,]"}, Case{"aTrailingCommaInAnObject", "{\"a\":1,}"},
        Case{"aLineComment", "[] // all"}, Case{"aBlockComment", "[/* none */]"},
        Case{"aByteOrderMark", "\xEF\xBB\xBF[]"}, Case{"anotherEncoding", QByteArray("[\0]\0", 4)},
        Case{"aNullByteBehind", QByteArray("[]\0", 3)}, Case{"aNullByteAndMore", QByteArray("[]\0x", 4)},
        Case{"aNullByteInAString", QByteArray("[\"\0\"]", 5)}, Case{"notANumber", "[NaN]"},
        Case{"infinity", "[Infinity]"}, Case{"aNumberTooLarge", "[1e999]"}, Case{"aLeadingZero", "[01]"},
        Case{"aPlusSign", "[+1]"}, Case{"noDigitBehindThePoint", "[1.]"}, Case{"singleQuotes", "['a']"},
        Case{"aKeyWithoutQuotes", "{a:1}"}, Case{"aLineBreakInAString", "[\"a\nb\"]"},
        Case{"anUnknownEscape", "[\"\\x41\"]"}, Case{"invalidUtf8", "[\"\xC3\"]"},
        Case{"anEncodedSurrogate", "[\"\xED\xA0\x80\"]"}, Case{"anOverlongForm", "[\"\xC0\xAF\"]"},
        Case{"aLoneHighSurrogate", "[\"\\ud800\"]"}, Case{"aLoneLowSurrogate", "[\"\\udc00\"]"},
        Case{"surrogatesInTheWrongOrder", "[\"\\udc00\\ud800\"]"}),
    nameOf);

TEST(JsonReading, ErrorsNameThePlaceAndNeverQuoteTheContent)
{
    EXPECT_EQ(refusal("[\"secret\", secret]"),
              QStringLiteral("not valid JSON: unexpected content at byte 12"));
    EXPECT_EQ(refusal("\xEF\xBB\xBF[]"), QStringLiteral("not valid JSON: unexpected content at byte 1"));
    EXPECT_EQ(refusal("[1e999]"), QStringLiteral("not valid JSON: a number is too large"));
    for (const char* text :
         {"[\"secret", "[\"secret\\ud800\"]", "[\"secret\" 5]", "{\"secret\":}", "[secret]"})
        EXPECT_FALSE(refusal(text).value().contains(QStringLiteral("secret"))) << text;
}

TEST(JsonReading, DeepNestingIsRefusedBeforeItCostsMemory)
{
    EXPECT_EQ(refusal(nested(deepestJsonNesting)), std::nullopt);
    EXPECT_EQ(refusal(nested(deepestJsonNesting + 1)),
              QStringLiteral("not valid JSON: nested too deeply at byte 513"));
    EXPECT_TRUE(refusal(QByteArray(50'000'000, '[')).has_value());
    EXPECT_TRUE(refusal(QByteArray("{\"a\":").repeated(5'000'000)).has_value());
}

TEST(JsonReading, BracketsInAStringAreNoNesting)
{
    const QByteArray brackets(2 * deepestJsonNesting, '[');
    EXPECT_EQ(refusal("[\"" + brackets + "\"]"), std::nullopt);
    EXPECT_EQ(refusal("[\"\\\"" + brackets + "\"]"), std::nullopt);
    EXPECT_EQ(refusal("[\"\\\\\",\"" + brackets + "\"]"), std::nullopt);
}

TEST(JsonReading, AnObjectWithVeryManyKeysIsReadInReasonableTime)
{
    QByteArray object = "{";
    for (int i = 0; i < 200'000; ++i)
        object += "\"" + QByteArray::number(i) + "\":0,";
    object += "\"text\":\"a\"}";
    EXPECT_EQ(stringMember(parseJson(object), "text"), QStringLiteral("a"));
}

TEST(JsonReading, TextComesOutAsItWasWritten)
{
    const auto text = [](const QByteArray& literal) {
        return stringMember(parseJson("{\"text\":" + literal + "}"), "text");
    };
    EXPECT_EQ(text("\"\""), QString());
    EXPECT_EQ(text("\"a\\n\\\"\\\\\\/\\u00e9\\ud83d\\ude00\""), QStringLiteral("a\n\"\\/é😀"));
    EXPECT_EQ(text("\"é日本😀\""), QStringLiteral("é日本😀"));
    EXPECT_EQ(text("\"a\\u0000b\""), QStringLiteral("a") + QChar(0) + QStringLiteral("b"));
    EXPECT_EQ(text("\"\xEF\xBB\xBF"
                   "a\""),
              QChar(0xFEFF) + QStringLiteral("a"));
}

TEST(JsonReading, EveryNumberIsANumber)
{
    const auto number = [](const QByteArray& literal) {
        return numberMember(parseJson("{\"date\":" + literal + "}"), "date");
    };
    EXPECT_EQ(number("0"), 0);
    EXPECT_EQ(number("-978307200"), -978307200);
    EXPECT_EQ(number("86400.0"), 86400);
    EXPECT_EQ(number("8.64e4"), 86400);
    EXPECT_EQ(number("18446744073709551615"), 18446744073709551615.0);
    EXPECT_EQ(number("100000000000000000000000"), 1e23);
    EXPECT_EQ(number("0.1"), 0.1);
}

TEST(JsonReading, OfEqualKeysTheLastOneCounts)
{
    EXPECT_EQ(stringMember(parseJson("{\"text\":1,\"text\":\"a\"}"), "text"), QStringLiteral("a"));
    EXPECT_THROW((void)stringMember(parseJson("{\"text\":\"a\",\"text\":1}"), "text"), Error);
}

TEST(JsonReading, AMemberMustBeThereAndHaveTheRightType)
{
    const Json object = parseJson(R"({"text":"a","number":1,"flag":true,"none":null,"list":[],"object":{}})");
    for (const char* key : {"number", "flag", "none", "list", "object", "absent"})
        EXPECT_THROW((void)stringMember(object, key), Error) << key;
    for (const char* key : {"text", "flag", "none", "list", "object", "absent"})
        EXPECT_THROW((void)numberMember(object, key), Error) << key;
    for (const char* key : {"text", "number", "flag", "none", "object", "absent"})
        EXPECT_THROW((void)arrayMember(object, key), Error) << key;
    for (const char* document : {"[]", "\"text\"", "1", "null"})
        EXPECT_THROW((void)stringMember(parseJson(document), "text"), Error) << document;
}

TEST(JsonReading, AUuidMayBeInEitherLetterCase)
{
    const auto uuid = [](const QByteArray& text) {
        return uuidMember(parseJson("{\"id\":\"" + text + "\"}"), "id");
    };
    const QUuid expected(0x0123ABCD, 0x4567, 0x89EF, 0xAB, 0xCD, 0xEF, 0x01, 0x23, 0x45, 0x67, 0x89);
    EXPECT_EQ(uuid("0123ABCD-4567-89EF-ABCD-EF0123456789"), expected);
    EXPECT_EQ(uuid("0123abcd-4567-89ef-abCD-EF0123456789"), expected);
    EXPECT_EQ(uuid("00000000-0000-0000-0000-000000000000"), QUuid());
}

TEST(JsonReading, NothingButTheCanonicalFormIsAUuid)
{
    for (const char* text :
         {"", "0123ABCD-4567-89EF-ABCD-EF012345678", "0123ABCD-4567-89EF-ABCD-EF01234567890",
          "{0123ABCD-4567-89EF-ABCD-EF0123456789}", "0123ABCD456789EFABCDEF0123456789",
          "0123ABCD-4567-89EF-ABCD-EF012345678G", "0123ABCD4-567-89EF-ABCD-EF0123456789",
          " 123ABCD-4567-89EF-ABCD-EF0123456789", "0123ABCD-4567-89EF-ABCD-EF01234567é"})
        EXPECT_THROW((void)uuidMember(parseJson(QByteArray("{\"id\":\"") + text + "\"}"), "id"), Error)
            << text;
}

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
