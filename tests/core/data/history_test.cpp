#include "base/error.h"
#include "core/data/history.h"
#include "support/history_bytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const TextFolding folding{Locale(QStringLiteral("en-US"))};

HistoryEntry entry(const char* text, double date = 0)
{
    return {QUuid::createUuid(), QString::fromUtf8(text), {date}};
}

TEST(History, EncodesWhatItHoldsAfterEveryKindOfChange)
{
    const HistoryEntry one = entry("one");
    const HistoryEntry two = entry("two");
    History history(folding, {two, one});
    EXPECT_EQ(decodedHistory(history.encode()), history.entries());

    const HistoryEntry three = entry("three");
    history.add(three);
    EXPECT_THAT(history.entries(), ElementsAre(three, two, one));
    EXPECT_EQ(decodedHistory(history.encode()), history.entries());

    history.remove(two.id);
    EXPECT_THAT(history.entries(), ElementsAre(three, one));
    EXPECT_EQ(decodedHistory(history.encode()), history.entries());

    history.limit(1);
    EXPECT_THAT(history.entries(), ElementsAre(three));
    EXPECT_EQ(decodedHistory(history.encode()), history.entries());

    history.limit(0);
    EXPECT_EQ(history.encode(), "[]");
}

TEST(History, FindsWhatItHoldsAfterEveryKindOfChange)
{
    const HistoryEntry apple = entry("An APPLE a day");
    const HistoryEntry pear = entry("A pear");
    History history(folding, {apple});
    history.add(pear);
    history.add(entry("Another apple"));
    EXPECT_EQ(history.containing(QStringLiteral("apple")).size(), 2U);
    EXPECT_THAT(history.containing(QStringLiteral("PEAR")), ElementsAre(pear));

    history.remove(pear.id);
    EXPECT_THAT(history.containing(QStringLiteral("pear")), IsEmpty());
    EXPECT_EQ(history.containing(QStringLiteral("a")).size(), 2U);
    history.limit(1);
    EXPECT_THAT(history.containing(QStringLiteral("day")), IsEmpty());
}

TEST(History, ACopyIsIndependent)
{
    History history(folding, {entry("one")});
    History copy = history;
    copy.add(entry("two"));
    EXPECT_EQ(history.entries().size(), 1U);
    EXPECT_EQ(decodedHistory(history.encode()).size(), 1U);
    EXPECT_EQ(decodedHistory(copy.encode()).size(), 2U);
}

TEST(History, AnAddedEntryThatCanNotBeEncodedFailsWhenItIsEncoded)
{
    History history(folding, {entry("one")});
    history.add(entry("two", std::numeric_limits<double>::quiet_NaN()));
    EXPECT_THROW((void)history.encode(), Error);
    EXPECT_THROW(History(folding, {entry("three", std::numeric_limits<double>::infinity())}), Error);
}

using testing::historyBytes;

const QUuid firstId = QUuid::fromString(QStringLiteral("0123abcd-4567-89ef-abcd-ef0123456789"));
const QUuid secondId = QUuid::fromString(QStringLiteral("fedcba98-7654-4321-8fed-cba987654321"));

std::vector<HistoryEntry> decodedOne(const QByteArray& id, const QByteArray& text, const QByteArray& date)
{
    return decodedHistory("[{\"id\":" + id + ",\"text\":" + text + ",\"date\":" + date + "}]");
}

const QByteArray id = "\"0123ABCD-4567-89EF-ABCD-EF0123456789\"";
const QByteArray text = "\"secret\"";

QString reasonOf(const QByteArray& bytes)
{
    try {
        (void)decodedHistory(bytes);
    } catch (const Error& error) {
        return error.description();
    }
    return {};
}

TEST(HistoryFile, IsACompactArrayInTheOrderOfTheList)
{
    const std::vector<HistoryEntry> history{{firstId, QStringLiteral("Say \"hello\"/é\n😀"), {86400.5}},
                                            {secondId, QString(), {0}}};
    EXPECT_EQ(historyBytes(history),
              "[{\"id\":\"0123ABCD-4567-89EF-ABCD-EF0123456789\",\"text\":\"Say \\\"hello\\\"/é\\n😀\","
              "\"date\":86400.5},"
              "{\"id\":\"FEDCBA98-7654-4321-8FED-CBA987654321\",\"text\":\"\",\"date\":0}]");
}

TEST(HistoryFile, AnEmptyHistoryIsAnEmptyArray)
{
    EXPECT_EQ(historyBytes({}), "[]");
    EXPECT_TRUE(decodedHistory("[]").empty());
    EXPECT_TRUE(decodedHistory(" [\n] ").empty());
}

TEST(HistoryFile, DatesAreSecondsSinceTheBeginningOf2001)
{
    using std::chrono::system_clock;
    const Date unixEpoch = Date::fromTimePoint(system_clock::time_point());
    EXPECT_EQ(historyBytes({{firstId, QString(), unixEpoch}}),
              "[{\"id\":\"0123ABCD-4567-89EF-ABCD-EF0123456789\",\"text\":\"\",\"date\":-978307200}]");
    EXPECT_EQ(decodedOne(id, text, "86400").at(0).date.secondsSinceUnixEpoch(), 978307200 + 86400);
}

TEST(HistoryFile, EveryTextSurvives)
{
    const std::vector<QString> texts{
        QStringLiteral("two\nlines\r\n\u2028\u2029"),
        QStringLiteral("\"quoted\" and \\ and 'single'"),
        QStringLiteral("日本語 हिन्दी עברית é e\u0301 😀👩‍👩‍👧"),
        QChar(0xFEFF) + QStringLiteral("a mark in front"),
        QStringLiteral("null") + QChar(0) + QStringLiteral("inside"),
        QString()};
    std::vector<HistoryEntry> history;
    for (const QString& each : texts)
        history.push_back({QUuid::createUuid(), each, {0.25}});
    EXPECT_EQ(decodedHistory(historyBytes(history)), history);
}

TEST(HistoryFile, AnEntryWithoutAPointInTimeCanNotBeEncoded)
{
    EXPECT_THROW((void)historyBytes({{firstId, QString(), {std::numeric_limits<double>::quiet_NaN()}}}),
                 Error);
    EXPECT_THROW((void)historyBytes({{firstId, QString(), {std::numeric_limits<double>::infinity()}}}),
                 Error);
}

TEST(HistoryFile, OneEntryThatLacksAKeyMakesTheWholeFileUnreadable)
{
    const QByteArray good = R"({"id":"0123ABCD-4567-89EF-ABCD-EF0123456789","text":"a","date":0})";
    EXPECT_EQ(decodedHistory("[" + good + "]").size(), 1U);
    for (const char* bad :
         {R"({"text":"a","date":0})", R"({"id":"0123ABCD-4567-89EF-ABCD-EF0123456789","date":0})",
          R"({"id":"0123ABCD-4567-89EF-ABCD-EF0123456789","text":"a"})", "{}", "[]", "null", "\"a\"", "0"})
        EXPECT_THROW((void)decodedHistory("[" + good + "," + bad + "]"), Error) << bad;
}

TEST(HistoryFile, EveryValueMustHaveItsType)
{
    EXPECT_EQ(decodedOne(id, text, "0").size(), 1U);
    for (const char* date : {"true", "false", "null", "\"0\"", "\"2001-01-01T00:00:00Z\"", "[0]", "{}"})
        EXPECT_THROW((void)decodedOne(id, text, date), Error) << date;
    for (const char* notText : {"null", "0", "[\"a\"]", "{}", "true"})
        EXPECT_THROW((void)decodedOne(id, notText, "0"), Error) << notText;
    for (const char* notId : {"null", "0", "\"\"", "\"1\"", "\"{0123ABCD-4567-89EF-ABCD-EF0123456789}\""})
        EXPECT_THROW((void)decodedOne(notId, text, "0"), Error) << notId;
}

TEST(HistoryFile, UnknownKeysAreIgnored)
{
    const auto history = decodedHistory(R"([{"app":{"deep":[[1]]},"date":1.5,"text":"a",)"
                                        R"("id":"0123abcd-4567-89ef-abcd-ef0123456789","method":null}])");
    EXPECT_EQ(history, (std::vector<HistoryEntry>{{firstId, QStringLiteral("a"), {1.5}}}));
}

TEST(HistoryFile, OnlyAnArrayIsAHistory)
{
    for (const char* bytes : {"{}", "null", "0", "\"a\"", "true", "", "[", "[] []", "\xEF\xBB\xBF[]"})
        EXPECT_THROW((void)decodedHistory(bytes), Error) << bytes;
}

TEST(HistoryFile, ErrorsNeverQuoteTheTexts)
{
    EXPECT_EQ(reasonOf("[{\"id\":" + id + ",\"text\":" + text + "}]"), QStringLiteral("\"date\" is missing"));
    EXPECT_EQ(reasonOf("[{\"id\":" + text + ",\"text\":" + text + ",\"date\":0}]"),
              QStringLiteral("\"id\" is no UUID"));
    EXPECT_EQ(reasonOf("[{\"id\":" + id + ",\"text\":" + text + ",\"date\":" + text + "}]"),
              QStringLiteral("\"date\" has the wrong type"));
    EXPECT_EQ(reasonOf("[" + text + "]"), QStringLiteral("a value is no object"));
    EXPECT_EQ(reasonOf(text), QStringLiteral("the history is no array"));
    EXPECT_EQ(reasonOf("[{\"text\":" + text),
              QStringLiteral("not valid JSON: unexpected content at byte 18"));
}

} // namespace
} // namespace corvandi
