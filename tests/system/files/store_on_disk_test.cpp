#include "store_fixture.h"
#include "system/preferences/unprivileged.h"

#include <QFileInfo>

namespace corvandi {
namespace {

using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::modeOf;
using testing::namesIn;
using testing::setMode;

class StoreOnDiskTest : public StoreOnDisk {
protected:
    void makeFolder() { PosixFileSystem().createDirectory(directory); }
};

TEST_F(StoreOnDiskTest, AFirstStartMakesAFolderForTheUserAloneAndNoFile)
{
    EXPECT_THAT(texts(), IsEmpty());
    EXPECT_EQ(modeOf(directory), 0700U);
    EXPECT_THAT(namesIn(directory), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(StoreOnDiskTest, WhatWasDictatedIsThereAfterTheNextStart)
{
    dictate("one");
    dictate("zwei\n\"日本\" 😀");
    EXPECT_THAT(texts(), ElementsAre(QString::fromUtf8("zwei\n\"日本\" 😀"), QStringLiteral("one")));
    EXPECT_EQ(modeOf(history), 0600U);
    EXPECT_THAT(namesIn(directory), ElementsAre(QStringLiteral("history.json")));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(StoreOnDiskTest, AVocabularyOfTheEarlierFormIsMigratedOnTheDisk)
{
    makeFolder();
    folder.put(vocab, R"([{"id":"0123abcd-4567-89ef-abcd-ef0123456789","from":"ok","to":"OK"}])");
    setMode(vocab, 0644);
    EXPECT_EQ(StoreRun(directory, log).store.rules(vocab_scope::Global{}).size(), 1U);
    EXPECT_EQ(contentOf(vocab), R"({"global":[{"id":"0123ABCD-4567-89EF-ABCD-EF0123456789","from":"ok",)"
                                R"("to":"OK"}],"apps":[]})");
    EXPECT_EQ(modeOf(vocab), 0600U);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(StoreOnDiskTest, ADamagedFileIsSetAsideInPlaceOfAnOlderOne)
{
    makeFolder();
    folder.put(history, "[{\"id\"");
    folder.put(aside, "older");
    dictate("new");
    EXPECT_EQ(contentOf(aside), "[{\"id\"");
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral("new")));
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(StoreOnDiskTest, AFolderInPlaceOfTheFileIsSetAsideWithItsContent)
{
    makeFolder();
    PosixFileSystem().createDirectory(history);
    folder.put(history + QStringLiteral("/inside"), "kept");
    dictate("new");
    EXPECT_EQ(contentOf(aside + QStringLiteral("/inside")), "kept");
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral("new")));
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("Corvandi: failed to load history.json: Is a directory")));
}

TEST_F(StoreOnDiskTest, AFolderWithContentIsNotRemovedForADamagedFile)
{
    makeFolder();
    folder.put(history, "damaged");
    PosixFileSystem().createDirectory(aside);
    folder.put(aside + QStringLiteral("/inside"), "kept");
    EXPECT_THAT(texts(), IsEmpty());
    EXPECT_EQ(contentOf(history), "damaged");
    EXPECT_EQ(contentOf(aside + QStringLiteral("/inside")), "kept");
    EXPECT_TRUE(
        log.contains(QStringLiteral("Corvandi: failed to move history.json aside: Directory not empty")));
}

TEST_F(StoreOnDiskTest, WhereEvenTheFileAndItsPlaceAsideAreFoldersTheProgramGoesOn)
{
    makeFolder();
    for (const QString& path : {history, aside}) {
        PosixFileSystem().createDirectory(path);
        folder.put(path + QStringLiteral("/inside"), "kept");
    }
    {
        StoreRun run(directory, log);
        run.store.addHistory(QStringLiteral("new"), {0});
        EXPECT_EQ(run.store.history().size(), 1U);
    }
    EXPECT_TRUE(log.contains(QStringLiteral("Corvandi: failed to write history.json: Is a directory")));
    EXPECT_EQ(contentOf(history + QStringLiteral("/inside")), "kept");
    EXPECT_EQ(contentOf(aside + QStringLiteral("/inside")), "kept");
}

TEST_F(StoreOnDiskTest, AFileBehindALinkStaysThere)
{
    dictate("one");
    const QString real = folder.path("real.json");
    ASSERT_TRUE(QFile::rename(history, real));
    folder.link(history, "../../real.json");
    dictate("two");
    EXPECT_TRUE(QFileInfo(history).isSymLink());
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral("two"), QStringLiteral("one")));
    EXPECT_TRUE(contentOf(real).contains("two"));
}

TEST_F(StoreOnDiskTest, ALinkToNowhereIsAnEmptyHistoryThatTheFirstDictationMakes)
{
    makeFolder();
    folder.link(history, "../../real.json");
    EXPECT_THAT(texts(), IsEmpty());
    EXPECT_THAT(namesIn(directory), ElementsAre(QStringLiteral("history.json")));
    dictate("one");
    EXPECT_TRUE(QFileInfo(history).isSymLink());
    EXPECT_TRUE(contentOf(folder.path("real.json")).contains("one"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(StoreOnDiskTest, ADamagedFileBehindALinkIsSetAsideWithTheLink)
{
    makeFolder();
    folder.put(folder.path("real.json"), "damaged");
    folder.link(history, "../../real.json");
    dictate("new");
    EXPECT_TRUE(QFileInfo(aside).isSymLink());
    EXPECT_EQ(contentOf(folder.path("real.json")), "damaged");
    EXPECT_FALSE(QFileInfo(history).isSymLink());
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral("new")));
}

TEST_F(StoreOnDiskTest, ALinkToItselfIsSetAside)
{
    makeFolder();
    folder.link(history, "history.json");
    dictate("new");
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral("new")));
    EXPECT_TRUE(QFileInfo(aside).isSymLink());
}

TEST_F(StoreOnDiskTest, APipeInPlaceOfTheFileDoesNotHoldUpTheStart)
{
    makeFolder();
    ASSERT_EQ(mkfifo(QFile::encodeName(history).constData(), 0600), 0);
    dictate("new");
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral("new")));
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("Corvandi: failed to load history.json: Not a regular file")));
}

TEST_F(StoreOnDiskTest, InAReadOnlyFolderEverythingWorksForThisRun)
{
    dictate("one");
    testing::giveAway(QFile::encodeName(history).constData());
    testing::giveAway(QFile::encodeName(directory).constData());
    setMode(folder.path(), 0755);
    setMode(folder.path("share"), 0755);
    setMode(directory, 0500);
    const QByteArray before = contentOf(history);
    const bool isRight = testing::withoutPrivileges([this] {
        {
            StoreRun run(directory, log);
            run.store.addHistory(QStringLiteral("two"), {0});
            run.store.addVocab(QStringLiteral("a"), QStringLiteral("b"), vocab_scope::Global{});
            EXPECT_EQ(run.store.history().size(), 2U);
        }
        EXPECT_THAT(log.lines(),
                    ElementsAre(QStringLiteral("Corvandi: failed to write history.json: Permission denied"),
                                QStringLiteral("Corvandi: failed to write vocab.json: Permission denied")));
        return !HasFailure();
    });
    setMode(directory, 0700);
    EXPECT_TRUE(isRight);
    EXPECT_EQ(contentOf(history), before);
    EXPECT_THAT(namesIn(directory), ElementsAre(QStringLiteral("history.json")));
}

TEST_F(StoreOnDiskTest, ADamagedFileInAReadOnlyFolderStays)
{
    makeFolder();
    folder.put(history, "damaged");
    setMode(history, 0644);
    setMode(folder.path(), 0755);
    setMode(folder.path("share"), 0755);
    setMode(directory, 0555);
    const bool isRight = testing::withoutPrivileges([this] {
        EXPECT_THAT(texts(), IsEmpty());
        EXPECT_TRUE(
            log.contains(QStringLiteral("Corvandi: failed to move history.json aside: Permission denied")));
        return !HasFailure();
    });
    setMode(directory, 0700);
    EXPECT_TRUE(isRight);
    EXPECT_EQ(contentOf(history), "damaged");
}

TEST_F(StoreOnDiskTest, AFileInPlaceOfTheFolderIsLoggedAndTheProgramGoesOn)
{
    PosixFileSystem().createDirectory(folder.path("share"));
    folder.put(directory, "kept");
    {
        StoreRun run(directory, log);
        run.store.addHistory(QStringLiteral("one"), {0});
        EXPECT_EQ(run.store.history().size(), 1U);
    }
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("Corvandi: failed to create store directory: File exists"),
                            QStringLiteral("Corvandi: failed to write history.json: Not a directory")));
    EXPECT_EQ(contentOf(directory), "kept");
}

} // namespace
} // namespace corvandi
