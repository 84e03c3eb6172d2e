#include "storage/history.h"

#include "base/error.h"
#include "storage/history_file.h"

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

} // namespace
} // namespace corvandi
