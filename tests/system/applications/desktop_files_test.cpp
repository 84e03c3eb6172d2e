#include "system/applications/desktop_files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace corvandi;

namespace {

std::string localesOf(const char* name)
{
    return desktopLocales(QString::fromLatin1(name)).join(QLatin1Char(' ')).toStdString();
}

} // namespace

TEST(DesktopLocales, TheMostSpecificComesFirst)
{
    EXPECT_EQ(localesOf("sr_RS.UTF-8@latin"), "sr_RS@latin sr_RS sr@latin sr");
    EXPECT_EQ(localesOf("de_AT.UTF-8"), "de_AT de");
    EXPECT_EQ(localesOf("ca@valencia"), "ca@valencia ca");
    EXPECT_EQ(localesOf("en"), "en");
}

TEST(DesktopLocales, WithoutALanguageThereAreNone)
{
    EXPECT_EQ(localesOf(""), "");
    EXPECT_EQ(localesOf("C"), "");
    EXPECT_EQ(localesOf("C.UTF-8"), "");
    EXPECT_EQ(localesOf("POSIX"), "");
}

using namespace corvandi;

namespace {

class DesktopFilesTest : public ::testing::Test {
protected:
    void write(const QString& name, const QByteArray& content) const
    {
        const QString path = folder.filePath(name);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    [[nodiscard]] DesktopFiles read() const
    {
        const DesktopPaths paths{{folder.filePath(QStringLiteral("home/applications")),
                                  folder.filePath(QStringLiteral("system/applications"))},
                                 {folder.filePath(QStringLiteral("config/mimeapps.list"))}};
        return readDesktopFiles(paths, {});
    }

    QTemporaryDir folder;
};

const QByteArray application = "[Desktop Entry]\nType=Application\nExec=tool\n";

} // namespace

TEST_F(DesktopFilesTest, AFileInASubfolderIsNamedWithADash)
{
    write(QStringLiteral("system/applications/suite/writer.desktop"), application);
    EXPECT_NE(read().index.withId(QStringLiteral("suite-writer")), nullptr);
}

TEST_F(DesktopFilesTest, TheFolderOfMorePrecedenceWins)
{
    write(QStringLiteral("home/applications/a.desktop"), application + "StartupWMClass=Home\n");
    write(QStringLiteral("system/applications/a.desktop"), application + "StartupWMClass=System\n");
    const auto files = read();
    EXPECT_EQ(files.index.size(), 1U);
    EXPECT_NE(files.index.withWindowClass(QStringLiteral("Home")), nullptr);
    EXPECT_EQ(files.index.withWindowClass(QStringLiteral("System")), nullptr);
}

TEST_F(DesktopFilesTest, ADeletedEntryHidesTheSystemsOne)
{
    write(QStringLiteral("home/applications/a.desktop"), "[Desktop Entry]\nHidden=true\n");
    write(QStringLiteral("system/applications/a.desktop"), application);
    EXPECT_EQ(read().index.size(), 0U);
}

TEST_F(DesktopFilesTest, FilesWithOtherSuffixesAndBrokenLinksAreLeftOut)
{
    write(QStringLiteral("system/applications/mimeinfo.cache"), application);
    ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere/x.desktop"),
                            folder.filePath(QStringLiteral("system/applications/x.desktop"))));
    EXPECT_EQ(read().index.size(), 0U);
}

TEST_F(DesktopFilesTest, TheDefaultHandlerOfFoldersIsTakenFromTheLists)
{
    write(QStringLiteral("system/applications/files.desktop"), application);
    write(QStringLiteral("config/mimeapps.list"), "[Default Applications]\ninode/directory=files.desktop\n");
    EXPECT_EQ(read().index.fileManagerId(), QStringLiteral("files"));
}

TEST_F(DesktopFilesTest, AFolderThatIsMissingIsWatchedThroughItsParent)
{
    write(QStringLiteral("system/applications/a.desktop"), application);
    const QStringList watched = read().foldersToWatch;
    EXPECT_TRUE(watched.contains(folder.path()));
    EXPECT_TRUE(watched.contains(folder.filePath(QStringLiteral("system/applications"))));
}

TEST_F(DesktopFilesTest, AnEntryWhoseProgramIsMissingIsNotUsable)
{
    write(QStringLiteral("system/applications/a.desktop"), application + "TryExec=sh\n");
    write(QStringLiteral("system/applications/b.desktop"), application + "TryExec=/no/such/program\n");
    write(QStringLiteral("system/applications/c.desktop"), application);
    const auto files = read();
    EXPECT_FALSE(files.index.withId(QStringLiteral("a"))->isUnusable);
    EXPECT_TRUE(files.index.withId(QStringLiteral("b"))->isUnusable);
    EXPECT_FALSE(files.index.withId(QStringLiteral("c"))->isUnusable);
}

TEST_F(DesktopFilesTest, NamesAreReadInTheLanguagesThatAreGiven)
{
    write(QStringLiteral("system/applications/a.desktop"), application + "Name=Files\nName[de]=Dateien\n");
    const DesktopPaths german{
        {folder.filePath(QStringLiteral("system/applications"))}, {}, {QStringLiteral("de")}};
    EXPECT_EQ(readDesktopFiles(german, {}).index.withId(QStringLiteral("a"))->name,
              QStringLiteral("Dateien"));
}

TEST_F(DesktopFilesTest, AReadingThatIsStoppedEndsWithoutTheFiles)
{
    write(QStringLiteral("system/applications/a.desktop"), application);
    std::stop_source stop;
    stop.request_stop();
    const DesktopPaths paths{{folder.filePath(QStringLiteral("system/applications"))}, {}};
    EXPECT_EQ(readDesktopFiles(paths, stop.get_token()).index.size(), 0U);
}

TEST(DesktopPaths, TheEnvironmentsFoldersComeInTheirOrderWithoutRelativeOnes)
{
    const auto restore = [names = QList<QByteArray>{"XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "XDG_DATA_HOME",
                                                    "XDG_DATA_DIRS",
                                                    "XDG_CURRENT_DESKTOP"}](const QList<QByteArray>& values) {
        for (qsizetype i = 0; i < names.size(); ++i)
            qputenv(names[i].constData(), values[i]);
    };
    restore({"/c", "/etc/c", "/d", "/s:relative:/t/", "A:b"});
    const auto paths = DesktopPaths::fromEnvironment();
    restore({"", "", "", "", ""});

    const QStringList folders{QStringLiteral("/d/applications"), QStringLiteral("/s/applications"),
                              QStringLiteral("/t/applications")};
    EXPECT_EQ(paths.applicationFolders, folders);
    const QStringList firstLists{QStringLiteral("/c/a-mimeapps.list"), QStringLiteral("/c/b-mimeapps.list"),
                                 QStringLiteral("/c/mimeapps.list"),
                                 QStringLiteral("/etc/c/a-mimeapps.list")};
    EXPECT_EQ(paths.mimeAppsLists.mid(0, 4), firstLists);
    EXPECT_EQ(paths.mimeAppsLists.size(), 15);
}
