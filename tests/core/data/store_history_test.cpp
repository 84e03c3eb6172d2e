#include "core/data/history.h"
#include "store_fixture.h"
#include "support/history_bytes.h"

#include <limits>
#include <stdexcept>

namespace corvandi {
namespace {

using testing::historyBytes;

using ::testing::ElementsAre;
using testing::FileOperation;
using ::testing::IsEmpty;

std::vector<QString> textsOf(const std::vector<HistoryEntry>& history)
{
    std::vector<QString> texts;
    for (const HistoryEntry& entry : history)
        texts.push_back(entry.text);
    return texts;
}

class StoreHistoryTest : public StoreFixture {
protected:
    void add(const char* text) { store.addHistory(QString::fromUtf8(text), {0}); }
    [[nodiscard]] std::vector<QString> list(const char* query) const
    {
        return textsOf(store.listHistory(QString::fromUtf8(query)));
    }

    Store& store = start();
};

TEST_F(StoreHistoryTest, ANewEntryStandsFirst)
{
    store.addHistory(QStringLiteral("one"), {86400});
    store.addHistory(QStringLiteral("two"), {86401.5});
    ASSERT_EQ(textsOf(store.history()), (std::vector<QString>{QStringLiteral("two"), QStringLiteral("one")}));
    EXPECT_EQ(store.history()[0].date, Date{86401.5});
    EXPECT_EQ(store.history()[1].date, Date{86400});
}

TEST_F(StoreHistoryTest, EveryEntryHasARandomIdentifierOfItsOwn)
{
    add("same");
    add("same");
    ASSERT_EQ(store.history().size(), 2U);
    EXPECT_NE(store.history()[0].id, store.history()[1].id);
    for (const HistoryEntry& entry : store.history())
        EXPECT_EQ(entry.id.version(), QUuid::Random);
}

TEST_F(StoreHistoryTest, TheWholeHistoryIsWrittenAfterEveryChangeInTheOrderOfTheChanges)
{
    add("one");
    const QByteArray afterOne = historyBytes(store.history());
    add("two");
    const QByteArray afterTwo = historyBytes(store.history());
    store.clearHistory();
    ASSERT_EQ(queue.size(), 3U);
    for (const QByteArray& expected : {afterOne, afterTwo, QByteArray("[]")}) {
        queue.runNext();
        EXPECT_EQ(files.files.at(historyPath), expected);
    }
}

TEST_F(StoreHistoryTest, ClearingItRemovesWhatWasSetAsideToo)
{
    files.files[historyAside] = "[{\"text\":\"secret";
    files.files[vocabAside] = "kept";
    store.deleteHistory(QUuid::createUuid());
    queue.runAll();
    EXPECT_TRUE(files.files.contains(historyAside)) << "only clearing does";
    store.clearHistory();
    queue.runAll();
    EXPECT_FALSE(files.files.contains(historyAside));
    EXPECT_TRUE(files.files.contains(vocabAside));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(StoreHistoryTest, WhatWasSetAsideAndCanNotBeRemovedIsLogged)
{
    files.files[historyAside] = "[";
    files.fail(FileOperation::remove, QStringLiteral("Permission denied"));
    store.clearHistory();
    queue.runAll();
    EXPECT_THAT(store.history(), IsEmpty());
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral(
                                 "Corvandi: failed to remove history.json.corrupt: Permission denied")));
}

TEST_F(StoreHistoryTest, NothingIsWrittenInTheCallThatChanges)
{
    files.calls.clear();
    add("one");
    store.deleteHistory(store.history()[0].id);
    store.clearHistory();
    EXPECT_THAT(files.calls, IsEmpty());
}

TEST_F(StoreHistoryTest, ItIsThereAgainAtTheNextStart)
{
    store.addHistory(QString::fromUtf8("Zeile\n\"é😀\""), {774360000.123});
    const std::vector<HistoryEntry> before = store.history();
    EXPECT_EQ(start().history(), before);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(StoreHistoryTest, TheEntryBeyondTheLimitDropsTheOldest)
{
    for (size_t i = 0; i < Store::historyLimit; ++i)
        store.addHistory(QString::number(i), {0});
    ASSERT_EQ(store.history().size(), 1000U);
    EXPECT_EQ(store.history().back().text, QStringLiteral("0"));

    add("the newest");
    ASSERT_EQ(store.history().size(), 1000U);
    EXPECT_EQ(store.history().front().text, QStringLiteral("the newest"));
    EXPECT_EQ(store.history().back().text, QStringLiteral("1"));
    queue.runAll();
    EXPECT_EQ(decodedHistory(files.files.at(historyPath)), store.history());
}

TEST_F(StoreHistoryTest, AFileBeyondTheLimitIsCutWithTheNextEntry)
{
    files.files[historyPath] =
        historyBytes(std::vector<HistoryEntry>(1500, {QUuid::createUuid(), QString(), {0}}));
    Store& anew = start();
    EXPECT_EQ(anew.history().size(), 1500U);
    anew.addHistory(QStringLiteral("new"), {0});
    EXPECT_EQ(anew.history().size(), 1000U);
    EXPECT_EQ(anew.history().front().text, QStringLiteral("new"));
}

TEST_F(StoreHistoryTest, DeletingRemovesEveryEntryWithTheIdentifier)
{
    const QUuid twice = QUuid::createUuid();
    files.files[historyPath] = historyBytes({{twice, QStringLiteral("a"), {3}},
                                             {QUuid::createUuid(), QStringLiteral("b"), {2}},
                                             {twice, QStringLiteral("c"), {1}}});
    Store& anew = start();
    anew.deleteHistory(twice);
    EXPECT_THAT(textsOf(anew.history()), ElementsAre(QStringLiteral("b")));
    queue.runAll();
    EXPECT_EQ(decodedHistory(files.files.at(historyPath)), anew.history());
}

TEST_F(StoreHistoryTest, DeletingAnUnknownEntryWritesTheUnchangedList)
{
    add("one");
    queue.runAll();
    const std::vector<HistoryEntry> before = store.history();
    store.deleteHistory(QUuid::createUuid());
    EXPECT_EQ(store.history(), before);
    queue.runAll();
    EXPECT_THAT(writes(), ElementsAre(historyPath, historyPath));
    EXPECT_EQ(decodedHistory(files.files.at(historyPath)), before);
}

TEST_F(StoreHistoryTest, ClearingLeavesAFileWithAnEmptyArray)
{
    add("one");
    store.clearHistory();
    EXPECT_THAT(store.history(), IsEmpty());
    queue.runAll();
    EXPECT_EQ(files.files.at(historyPath), "[]");
}

TEST_F(StoreHistoryTest, WithoutAQueryEverythingIsListedNewestFirst)
{
    add("one");
    add("two");
    EXPECT_EQ(store.listHistory(), store.history());
    EXPECT_EQ(store.listHistory(std::nullopt), store.history());
}

TEST_F(StoreHistoryTest, AQueryOfNothingButSpacesAndTabsListsEverything)
{
    add("one");
    add("two");
    for (const char* query : {"", "  ", "\t \t", "\u00A0\u3000"})
        EXPECT_EQ(list(query).size(), 2U) << query;
}

TEST_F(StoreHistoryTest, AQueryFindsItsTextInAnyLetterCase)
{
    add("Say HELLO there");
    add("goodbye");
    add("hello again");
    EXPECT_THAT(list("hello"), ElementsAre(QStringLiteral("hello again"), QStringLiteral("Say HELLO there")));
    EXPECT_THAT(list(" \thello\t "),
                ElementsAre(QStringLiteral("hello again"), QStringLiteral("Say HELLO there")));
    EXPECT_THAT(list("hello there"), ElementsAre(QStringLiteral("Say HELLO there")));
    EXPECT_THAT(list("nothing like it"), IsEmpty());
}

TEST_F(StoreHistoryTest, LineBreaksOfAQueryCount)
{
    add("one two");
    add("one\ntwo");
    EXPECT_THAT(list("one\n"), ElementsAre(QStringLiteral("one\ntwo")));
    EXPECT_THAT(list("\n"), ElementsAre(QStringLiteral("one\ntwo")));
}

TEST_F(StoreHistoryTest, AQueryComparesAsTheUsersLanguageDoes)
{
    add("IRMAK");
    EXPECT_THAT(list("irmak"), ElementsAre(QStringLiteral("IRMAK")));
    Store& turkish = start("tr-TR");
    EXPECT_THAT(turkish.listHistory(QStringLiteral("irmak")), IsEmpty());
    EXPECT_EQ(turkish.listHistory(QString::fromUtf8("ırmak")).size(), 1U);
}

TEST_F(StoreHistoryTest, ListingChangesNothing)
{
    add("one");
    queue.runAll();
    files.calls.clear();
    (void)list("none");
    EXPECT_EQ(store.history().size(), 1U);
    EXPECT_EQ(queue.size(), 0U);
    EXPECT_THAT(files.calls, IsEmpty());
}

TEST_F(StoreHistoryTest, WhatCanNotBeEncodedIsNotAdded)
{
    add("one");
    queue.runAll();
    store.addHistory(QStringLiteral("secret"), {std::numeric_limits<double>::quiet_NaN()});
    EXPECT_THAT(textsOf(store.history()), ElementsAre(QStringLiteral("one")));
    EXPECT_EQ(queue.size(), 0U);
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral(
                                 "Corvandi: failed to encode history.json: a number is not finite")));

    add("two");
    EXPECT_EQ(store.history().size(), 2U);
    EXPECT_EQ(queue.size(), 1U);
}

TEST_F(StoreHistoryTest, AfterAFailedWriteMemoryShowsTheChangeAndTheNextWriteBringsTheFileUpToDate)
{
    add("one");
    queue.runAll();
    const QByteArray before = files.files.at(historyPath);

    files.fail(FileOperation::write, QStringLiteral("No space left on device"));
    add("two");
    queue.runAll();
    EXPECT_EQ(store.history().size(), 2U);
    EXPECT_EQ(files.files.at(historyPath), before);
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral(
                                 "Corvandi: failed to write history.json: No space left on device")));

    files.recover(FileOperation::write);
    add("three");
    queue.runAll();
    EXPECT_EQ(decodedHistory(files.files.at(historyPath)).size(), 3U);
    EXPECT_EQ(log.lines().size(), 1U);
}

/// Fails in ways that no file system should.
class BrokenFileSystem : public testing::FakeFileSystem {
public:
    void writeAtomically(const QString& /*path*/, const QByteArray& /*content*/) override
    {
        if (isFirst_) {
            isFirst_ = false;
            throw std::bad_alloc();
        }
        throw 42;
    }

private:
    bool isFirst_ = true;
};

TEST_F(StoreHistoryTest, NothingThatAWriteThrowsGetsOutOfTheQueue)
{
    BrokenFileSystem broken;
    Store other(directory, broken, queue, log, Locale(QStringLiteral("en-US")));
    other.clearHistory();
    other.clearHistory();
    queue.runAll();
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("Corvandi: failed to write history.json: std::bad_alloc"),
                            QStringLiteral("Corvandi: failed to write history.json: unknown error")));
}

TEST_F(StoreHistoryTest, WritesThatWaitOutliveTheStore)
{
    {
        Store other(directory, files, queue, log, Locale(QStringLiteral("en-US")));
        other.addHistory(QStringLiteral("late"), {0});
    }
    queue.runAll();
    EXPECT_EQ(decodedHistory(files.files.at(historyPath)).at(0).text, QStringLiteral("late"));
}

} // namespace
} // namespace corvandi
