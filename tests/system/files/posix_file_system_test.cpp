#include "system/files/posix_file_system.h"

#include "base/error.h"
#include "base/file_descriptor.h"
#include "real_folder.h"
#include "system/files/system_wall_clock.h"
#include "system/preferences/unprivileged.h"

#include <QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>

#include <functional>

namespace corvandi {
namespace {

using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::modeOf;
using testing::namesIn;
using testing::setMode;

/// The description of the error that `operation` throws; empty when there is none.
std::string failureOf(const std::function<void()>& operation)
{
    try {
        operation();
    } catch (const Error& error) {
        return error.description().toStdString();
    }
    return {};
}

class PosixFileSystemTest : public ::testing::Test {
protected:
    testing::RealFolder folder;
    PosixFileSystem files;
    const QString file = folder.path("file.json");
};

TEST_F(PosixFileSystemTest, AFileHoldsWhatWasWritten)
{
    files.writeAtomically(file, "one");
    EXPECT_EQ(files.read(file), "one");
    files.writeAtomically(file, QByteArray("\0\xFF\n", 3));
    EXPECT_EQ(files.read(file), QByteArray("\0\xFF\n", 3));
    files.writeAtomically(file, "");
    EXPECT_EQ(files.read(file), "");
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(QStringLiteral("file.json")));
}

TEST_F(PosixFileSystemTest, LargeContentSurvives)
{
    QByteArray content(20'000'003, Qt::Uninitialized);
    for (qsizetype i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>(i * 31 % 251);
    files.writeAtomically(file, content);
    EXPECT_TRUE(files.read(file) == content);
}

TEST_F(PosixFileSystemTest, AFileOfUnknownSizeIsReadToItsEnd)
{
    EXPECT_THAT(files.read(QStringLiteral("/proc/self/status")).toStdString(), HasSubstr("Threads:"));
}

TEST_F(PosixFileSystemTest, WhatIsWrittenIsForTheUserAlone)
{
    files.writeAtomically(file, "new");
    EXPECT_EQ(modeOf(file), 0600U);

    folder.put(folder.path("wide"), "old");
    setMode(folder.path("wide"), 0666);
    files.writeAtomically(folder.path("wide"), "new");
    EXPECT_EQ(modeOf(folder.path("wide")), 0600U);
}

TEST_F(PosixFileSystemTest, TheUserCanReadWhateverTheUmask)
{
    const mode_t before = umask(0777);
    files.writeAtomically(file, "new");
    umask(before);
    EXPECT_EQ(modeOf(file), 0600U);
}

TEST_F(PosixFileSystemTest, ReadersKeepTheOldContentThatTheyHaveOpened)
{
    files.writeAtomically(file, "old");
    QFile reader(file);
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    files.writeAtomically(file, "new content");
    EXPECT_EQ(reader.readAll(), "old");
}

TEST_F(PosixFileSystemTest, MissingFoldersAreMadeForTheUserAlone)
{
    const mode_t before = umask(0);
    files.createDirectory(folder.path("a/b/c"));
    umask(before);
    for (const char* name : {"a", "a/b", "a/b/c"})
        EXPECT_EQ(modeOf(folder.path(name)), 0700U) << name;
}

TEST_F(PosixFileSystemTest, AFolderThatExistsIsLeftAsItIs)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("wide")));
    setMode(folder.path("wide"), 0755);
    files.createDirectory(folder.path("wide"));
    files.createDirectory(folder.path("wide/"));
    EXPECT_EQ(modeOf(folder.path("wide")), 0755U);

    folder.link(folder.path("link"), "wide");
    files.createDirectory(folder.path("link/inside"));
    EXPECT_TRUE(QFileInfo(folder.path("wide/inside")).isDir());
}

TEST_F(PosixFileSystemTest, AFileInTheWayOfAFolderIsAnError)
{
    folder.put(file, "");
    EXPECT_EQ(failureOf([&] { files.createDirectory(file); }), "File exists");
    EXPECT_EQ(failureOf([&] { files.createDirectory(file + QStringLiteral("/below")); }), "File exists");
}

TEST_F(PosixFileSystemTest, AFileAFolderAndALinkToOneOfThemExist)
{
    EXPECT_FALSE(files.exists(file));
    EXPECT_FALSE(files.exists(folder.path("none/below")));
    folder.put(file, "");
    EXPECT_TRUE(files.exists(file));
    EXPECT_FALSE(files.exists(file + QStringLiteral("/below")));
    EXPECT_TRUE(files.exists(folder.path()));
    folder.link(folder.path("link"), "file.json");
    EXPECT_TRUE(files.exists(folder.path("link")));
    folder.link(folder.path("nowhere"), "none");
    EXPECT_FALSE(files.exists(folder.path("nowhere")));
    folder.link(folder.path("loop"), "loop");
    EXPECT_EQ(failureOf([&] { (void)files.exists(folder.path("loop")); }),
              "Too many levels of symbolic links");
}

TEST_F(PosixFileSystemTest, WhatIsNoFileCanNotBeRead)
{
    EXPECT_EQ(failureOf([&] { (void)files.read(file); }), "No such file or directory");
    EXPECT_EQ(failureOf([&] { (void)files.read(folder.path()); }), "Is a directory");
    ASSERT_EQ(mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    EXPECT_EQ(failureOf([&] { (void)files.read(file); }), "Not a regular file");
    EXPECT_EQ(failureOf([&] { (void)files.read(QStringLiteral("/dev/zero")); }), "Not a regular file");
}

TEST_F(PosixFileSystemTest, AFolderIsNotReplacedByAFile)
{
    files.createDirectory(file);
    folder.put(file + QStringLiteral("/inside"), "kept");
    EXPECT_EQ(failureOf([&] { files.writeAtomically(file, "new"); }), "Is a directory");
    EXPECT_EQ(contentOf(file + QStringLiteral("/inside")), "kept");
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(QStringLiteral("file.json")));
}

TEST_F(PosixFileSystemTest, WithoutItsFolderAFileIsNotWritten)
{
    EXPECT_EQ(failureOf([&] { files.writeAtomically(folder.path("none/file"), "new"); }),
              "No such file or directory");
    EXPECT_THAT(namesIn(folder.path()), IsEmpty());
}

TEST_F(PosixFileSystemTest, ThroughLinksTheFileAtTheirEndIsReplaced)
{
    files.createDirectory(folder.path("elsewhere"));
    folder.put(folder.path("elsewhere/real"), "old");
    folder.link(folder.path("elsewhere/second"), "real");
    folder.link(file, "elsewhere/second");
    files.writeAtomically(file, "new");
    EXPECT_EQ(contentOf(folder.path("elsewhere/real")), "new");
    EXPECT_TRUE(QFileInfo(file).isSymLink());
    EXPECT_TRUE(QFileInfo(folder.path("elsewhere/second")).isSymLink());
    EXPECT_THAT(namesIn(folder.path("elsewhere")),
                ElementsAre(QStringLiteral("real"), QStringLiteral("second")));
}

TEST_F(PosixFileSystemTest, AnAbsoluteLinkIsFollowedToo)
{
    folder.put(folder.path("real"), "old");
    folder.link(file, folder.path("real").toUtf8().constData());
    files.writeAtomically(file, "new");
    EXPECT_EQ(contentOf(folder.path("real")), "new");
    EXPECT_TRUE(QFileInfo(file).isSymLink());
}

TEST_F(PosixFileSystemTest, ThroughALinkToNowhereTheFileIsMadeThere)
{
    files.createDirectory(folder.path("elsewhere"));
    folder.link(file, "elsewhere/real");
    files.writeAtomically(file, "new");
    EXPECT_EQ(contentOf(folder.path("elsewhere/real")), "new");
    EXPECT_EQ(modeOf(folder.path("elsewhere/real")), 0600U);
    EXPECT_TRUE(QFileInfo(file).isSymLink());
}

TEST_F(PosixFileSystemTest, ALoopOfLinksIsAnError)
{
    folder.link(file, "other");
    folder.link(folder.path("other"), "file.json");
    EXPECT_EQ(failureOf([&] { files.writeAtomically(file, "new"); }), "Too many levels of symbolic links");
    EXPECT_EQ(namesIn(folder.path()).size(), 2);
}

TEST_F(PosixFileSystemTest, FilesLinksAndEmptyFoldersAreRemoved)
{
    folder.put(file, "kept");
    folder.link(folder.path("link"), "file.json");
    files.remove(folder.path("link"));
    EXPECT_EQ(contentOf(file), "kept");
    files.remove(file);
    files.createDirectory(file);
    files.remove(file);
    EXPECT_THAT(namesIn(folder.path()), IsEmpty());
    EXPECT_EQ(failureOf([&] { files.remove(file); }), "No such file or directory");
}

TEST_F(PosixFileSystemTest, AFolderWithContentIsNeverRemoved)
{
    files.createDirectory(file);
    folder.put(file + QStringLiteral("/inside"), "kept");
    EXPECT_EQ(failureOf([&] { files.remove(file); }), "Directory not empty");
    EXPECT_EQ(contentOf(file + QStringLiteral("/inside")), "kept");
}

TEST_F(PosixFileSystemTest, WhatIsMovedKeepsItsContent)
{
    folder.put(file, "content");
    files.move(file, folder.path("moved"));
    EXPECT_EQ(contentOf(folder.path("moved")), "content");
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(QStringLiteral("moved")));
    EXPECT_EQ(failureOf([&] { files.move(file, folder.path("again")); }), "No such file or directory");
}

TEST_F(PosixFileSystemTest, ALinkIsMovedItselfAndTakesTheNameOfALinkToNowhere)
{
    folder.link(file, "none");
    folder.link(folder.path("moved"), "nowhere");
    files.move(file, folder.path("moved"));
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(QStringLiteral("moved")));
    EXPECT_TRUE(QFileInfo(folder.path("moved")).symLinkTarget().endsWith(QStringLiteral("/none")));
}

TEST_F(PosixFileSystemTest, AReadOnlyFolderKeepsItsFiles)
{
    folder.put(file, "old");
    setMode(file, 0644);
    setMode(folder.path(), 0555);
    const bool isRight = testing::withoutPrivileges([this] {
        return failureOf([this] { files.writeAtomically(file, "new"); }) == "Permission denied" &&
               failureOf([this] { files.createDirectory(folder.path("a")); }) == "Permission denied" &&
               failureOf([this] { files.remove(file); }) == "Permission denied" &&
               failureOf([this] { files.move(file, folder.path("b")); }) == "Permission denied" &&
               files.read(file) == "old";
    });
    setMode(folder.path(), 0755);
    EXPECT_TRUE(isRight);
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(QStringLiteral("file.json")));
}

TEST_F(PosixFileSystemTest, AFileThatMayNotBeReadSaysSo)
{
    folder.put(file, "secret");
    setMode(file, 0);
    setMode(folder.path(), 0755);
    EXPECT_TRUE(testing::withoutPrivileges(
        [this] { return failureOf([this] { (void)files.read(file); }) == "Permission denied"; }));
}

TEST_F(PosixFileSystemTest, WhatAKilledProcessHasLeftGoesWithTheNextWrite)
{
    for (const char* name : {".file.json.corvandi-abcdef", ".file.json.corvandi-A1b2C3"}) {
        folder.put(folder.path(name), "half");
        setMode(folder.path(name), 0600);
    }
    files.writeAtomically(file, "new");
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(QStringLiteral("file.json")));
}

TEST_F(PosixFileSystemTest, LeftoversBesideTheTargetOfALinkGoToo)
{
    files.createDirectory(folder.path("elsewhere"));
    folder.link(file, "elsewhere/real");
    const QString leftover = folder.path("elsewhere/.real.corvandi-abcdef");
    folder.put(leftover, "half");
    setMode(leftover, 0600);
    files.writeAtomically(file, "new");
    EXPECT_THAT(namesIn(folder.path("elsewhere")), ElementsAre(QStringLiteral("real")));
}

TEST_F(PosixFileSystemTest, ForeignFilesAreNeverTouched)
{
    for (const char* name :
         {".file.json.corvandi-abcde", ".file.json.corvandi-abcdefg", ".file.json.corvandi-abc.ef",
          ".file.json.corvandi-", "file.json.corvandi-abcdef", ".other.json.corvandi-abcdef", "file.json~",
          ".file.json.swp", "file.json.corrupt"}) {
        folder.put(folder.path(name), "foreign");
        setMode(folder.path(name), 0600);
    }
    files.createDirectory(folder.path(".file.json.corvandi-folder"));
    folder.link(folder.path(".file.json.corvandi-link00"), "file.json~");
    folder.put(folder.path(".file.json.corvandi-public"), "foreign");
    setMode(folder.path(".file.json.corvandi-public"), 0644);
    const QStringList before = namesIn(folder.path());

    files.writeAtomically(file, "new");
    QStringList after = namesIn(folder.path());
    EXPECT_EQ(after.removeAll(QStringLiteral("file.json")), 1);
    EXPECT_EQ(after, before);
}

TEST_F(PosixFileSystemTest, WhatAnotherProcessIsWritingIsNoLeftover)
{
    const QString busy = folder.path(".file.json.corvandi-abcdef");
    folder.put(busy, "half");
    setMode(busy, 0600);
    {
        const FileDescriptor writer(open(QFile::encodeName(busy).constData(), O_RDONLY | O_CLOEXEC));
        ASSERT_EQ(flock(writer.get(), LOCK_EX), 0);
        files.writeAtomically(file, "new");
        EXPECT_EQ(contentOf(busy), "half");
    }
    files.writeAtomically(file, "new");
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(QStringLiteral("file.json")));
}

TEST_F(PosixFileSystemTest, NamesMayHoldAnyCharacter)
{
    const QString name = folder.path() + QString::fromUtf8("/Größe \"日本\"\n.json");
    files.writeAtomically(name, "new");
    EXPECT_TRUE(files.exists(name));
    EXPECT_EQ(files.read(name), "new");
}

TEST(SystemWallClock, IsTheSystemsTime)
{
    using std::chrono::system_clock;
    const Date before = Date::fromTimePoint(system_clock::now());
    const Date now = SystemWallClock().now();
    EXPECT_GE(now, before);
    EXPECT_LE(now, Date::fromTimePoint(system_clock::now()));
}

} // namespace
} // namespace corvandi
