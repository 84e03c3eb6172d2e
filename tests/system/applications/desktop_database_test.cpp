#include "support/event_loop.h"
#include "support/virtual_queue.h"
#include "system/applications/desktop_database.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <semaphore>

using namespace corvandi;

namespace {

DesktopEntry folderOpener(const char* id, const char* category)
{
    DesktopEntry entry;
    entry.id = QString::fromLatin1(id);
    entry.mimeTypes = {QString::fromLatin1(folderMimeType)};
    entry.categories = {QString::fromLatin1(category)};
    return entry;
}

const std::vector<DesktopEntry> installed{folderOpener("code", "TextEditor"),
                                          folderOpener("files", "FileManager"),
                                          folderOpener("browser", "FileManager")};

QString fileManager(const std::vector<QByteArray>& lists)
{
    return fileManagerAmong(installed, mimeApplications(lists, folderMimeType));
}

} // namespace

TEST(MimeApplications, TheFirstInstalledDefaultOpensFolders)
{
    EXPECT_EQ(fileManager({"[Default Applications]\ninode/directory=missing.desktop;browser.desktop;\n"}),
              QStringLiteral("browser"));
}

TEST(MimeApplications, AListOfMorePrecedenceDecides)
{
    EXPECT_EQ(fileManager({"[Default Applications]\ninode/directory=browser.desktop\n",
                           "[Default Applications]\ninode/directory=files.desktop\n"}),
              QStringLiteral("browser"));
}

TEST(MimeApplications, APersonsChoiceNeedsNoFileManagerCategory)
{
    EXPECT_EQ(fileManager({"[Default Applications]\ninode/directory=code.desktop\n"}),
              QStringLiteral("code"));
}

TEST(MimeApplications, WithoutADefaultAnAddedFileManagerOpensFolders)
{
    EXPECT_EQ(fileManager({"[Added Associations]\ninode/directory=code.desktop;browser.desktop;\n"}),
              QStringLiteral("browser"));
}

TEST(MimeApplications, WithoutAnyListTheFirstFileManagerThatDeclaresFoldersOpensThem)
{
    EXPECT_EQ(fileManager({}), QStringLiteral("files"));
    EXPECT_EQ(fileManager({"[Default Applications]\ntext/plain=code.desktop\n"}), QStringLiteral("files"));
}

TEST(MimeApplications, ARemovedAssociationIsSkipped)
{
    EXPECT_EQ(fileManager({"[Removed Associations]\ninode/directory=files.desktop\n"}),
              QStringLiteral("browser"));
}

TEST(MimeApplications, AListTakesBackOnlyWhatListsOfLessPrecedenceAdd)
{
    const auto applications = mimeApplications(
        {"[Added Associations]\na/b=kept.desktop\n[Removed Associations]\na/b=gone.desktop\n",
         "[Added Associations]\na/b=gone.desktop;late.desktop\n"},
        "a/b");
    EXPECT_EQ(applications.added, (QStringList{QStringLiteral("kept"), QStringLiteral("late")}));
}

TEST(MimeApplications, WithoutAFileManagerThereIsNone)
{
    EXPECT_TRUE(fileManagerAmong({folderOpener("code", "TextEditor")}, {}).isEmpty());
}

using namespace corvandi;
using corvandi::testing::VirtualQueue;
using corvandi::testing::waitUntil;
using namespace std::chrono_literals;

namespace {

/// Tells when a thread has handed over what it read; nobody takes that before the queue is drained.
class HandoverQueue : public VirtualQueue {
public:
    void async(std::function<void()> work) override
    {
        VirtualQueue::async(std::move(work));
        handedOver_.release();
    }
    [[nodiscard]] bool waitForHandover() { return handedOver_.try_acquire_for(20s); }

private:
    std::counting_semaphore<> handedOver_{0};
};

class DesktopDatabaseTest : public ::testing::Test {
protected:
    DesktopDatabaseTest()
    {
        for (const QString& name : {QStringLiteral("applications"), QStringLiteral("config")})
            QDir(folder.path()).mkpath(name);
    }

    void install(const QString& id) const
    {
        const QString path = folder.filePath(QStringLiteral("applications/%1.desktop").arg(id));
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\nName=Tool\nExec=tool\n");
    }
    [[nodiscard]] DesktopPaths paths() const
    {
        return {{folder.filePath(QStringLiteral("applications"))}, {mimeAppsList()}};
    }
    [[nodiscard]] QString mimeAppsList() const
    {
        return folder.filePath(QStringLiteral("config/mimeapps.list"));
    }

    /// The reading that goes on ends and is taken over.
    [[nodiscard]] bool finishReading()
    {
        if (!queue.waitForHandover())
            return false;
        queue.drain();
        return true;
    }
    /// The reading that is due after the folders have settled begins.
    [[nodiscard]] bool beginNextReading()
    {
        if (!waitUntil([this] { return queue.timerCount() == 1; }))
            return false;
        queue.advance(500ms);
        return true;
    }
    [[nodiscard]] bool readAgain() { return beginNextReading() && finishReading(); }

    int noArguments = 0;
    QCoreApplication application{noArguments, nullptr};
    QTemporaryDir folder;
    HandoverQueue queue;
};

bool knows(const DesktopDatabase& database, const char* id)
{
    return database.index().withId(QString::fromLatin1(id)) != nullptr;
}

} // namespace

TEST_F(DesktopDatabaseTest, AnApplicationThatIsInstalledBeforeItsFolderIsWatchedIsFound)
{
    install(QStringLiteral("early"));
    DesktopDatabase database(queue, paths());
    ASSERT_TRUE(queue.waitForHandover());
    install(QStringLiteral("meanwhile"));
    queue.drain();
    EXPECT_TRUE(knows(database, "early"));
    EXPECT_FALSE(knows(database, "meanwhile"));

    ASSERT_TRUE(readAgain());
    EXPECT_TRUE(knows(database, "meanwhile"));
}

TEST_F(DesktopDatabaseTest, NothingIsReadAgainWithoutAChange)
{
    DesktopDatabase database(queue, paths());
    ASSERT_TRUE(finishReading());
    ASSERT_TRUE(readAgain());
    QCoreApplication::processEvents();
    EXPECT_EQ(queue.timerCount(), 0U);
}

TEST_F(DesktopDatabaseTest, AnApplicationThatIsInstalledLaterIsFound)
{
    DesktopDatabase database(queue, paths());
    ASSERT_TRUE(finishReading());
    ASSERT_TRUE(readAgain());
    install(QStringLiteral("late"));
    ASSERT_TRUE(readAgain());
    EXPECT_TRUE(knows(database, "late"));
}

TEST_F(DesktopDatabaseTest, AChangeDuringAReadingCausesAnother)
{
    DesktopDatabase database(queue, paths());
    ASSERT_TRUE(finishReading());
    ASSERT_TRUE(readAgain());

    // The list is read after the applications; as a pipe it keeps the reading there.
    ASSERT_EQ(::mkfifo(mimeAppsList().toLocal8Bit().constData(), 0600), 0);
    ASSERT_TRUE(beginNextReading());
    const int list = ::open(mimeAppsList().toLocal8Bit().constData(), O_WRONLY | O_CLOEXEC);
    install(QStringLiteral("meanwhile"));
    ASSERT_TRUE(QFile::remove(mimeAppsList()));
    QCoreApplication::processEvents();
    EXPECT_EQ(queue.timerCount(), 0U);
    ::close(list);
    ASSERT_TRUE(finishReading());
    EXPECT_FALSE(knows(database, "meanwhile"));

    ASSERT_TRUE(readAgain());
    EXPECT_TRUE(knows(database, "meanwhile"));
}

TEST_F(DesktopDatabaseTest, WhatIsInstalledIntoANewFolderBeforeThatIsWatchedIsFound)
{
    DesktopDatabase database(queue, paths());
    ASSERT_TRUE(finishReading());
    ASSERT_TRUE(readAgain());

    install(QStringLiteral("suite/writer"));
    ASSERT_TRUE(beginNextReading());
    ASSERT_TRUE(queue.waitForHandover());
    install(QStringLiteral("suite/painter"));
    queue.drain();
    EXPECT_TRUE(knows(database, "suite-writer"));
    EXPECT_FALSE(knows(database, "suite-painter"));

    ASSERT_TRUE(readAgain());
    EXPECT_TRUE(knows(database, "suite-painter"));
}

TEST_F(DesktopDatabaseTest, AFolderThatIsReplacedIsWatchedAgain)
{
    DesktopDatabase database(queue, paths());
    ASSERT_TRUE(finishReading());
    ASSERT_TRUE(readAgain());

    ASSERT_TRUE(QDir(folder.filePath(QStringLiteral("applications"))).removeRecursively());
    install(QStringLiteral("replaced"));
    while (queue.timerCount() == 1 || !knows(database, "replaced"))
        ASSERT_TRUE(readAgain());
    install(QStringLiteral("late"));
    ASSERT_TRUE(readAgain());
    EXPECT_TRUE(knows(database, "late"));
}
