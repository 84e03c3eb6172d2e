#include "system/preferences/preferences_file.h"

#include "support/recording_log.h"
#include "unprivileged.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QSize>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

namespace corvandi {
namespace {

using testing::RecordingLog;
using Values = std::map<QString, QString>;

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("can't write the file of the test");
}

mode_t modeOf(const QString& path)
{
    struct stat status {};
    stat(QFile::encodeName(path).constData(), &status);
    return status.st_mode & 07777;
}

class PreferencesFileTest : public ::testing::Test {
protected:
    [[nodiscard]] Values readAnew() { return PreferencesFile(path, log).read(); }
    [[nodiscard]] QStringList files() const
    {
        return QDir(QFileInfo(path).path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    RecordingLog log;
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("Corvandi/Corvandi.conf"));
    PreferencesFile file{path, log};
    const QString key = QStringLiteral("saveHistory");
};

TEST_F(PreferencesFileTest, ReadingMakesNothing)
{
    EXPECT_TRUE(file.read().empty());
    EXPECT_FALSE(QFileInfo::exists(QFileInfo(path).path()));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(PreferencesFileTest, ValuesComeBack)
{
    file.merge({{QStringLiteral("number"), int64_t{-49}},
                {QStringLiteral("flag"), true},
                {QStringLiteral("text"), QStringLiteral("a, \"b\"; @c = Größe\n\u2028")}});
    EXPECT_EQ(readAnew(), (Values{{QStringLiteral("number"), QStringLiteral("-49")},
                                  {QStringLiteral("flag"), QStringLiteral("true")},
                                  {QStringLiteral("text"), QStringLiteral("a, \"b\"; @c = Größe\n\u2028")}}));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(PreferencesFileTest, IsAPlainIniFile)
{
    file.merge({{key, false}, {QStringLiteral("hotkeyKeyCode"), int64_t{49}}});
    EXPECT_EQ(contents(path), "[General]\nhotkeyKeyCode=49\nsaveHistory=false\n");
}

TEST_F(PreferencesFileTest, BelongsToItsOwnerAlone)
{
    file.merge({{key, true}});
    EXPECT_EQ(modeOf(path), 0600u);
    EXPECT_EQ(modeOf(QFileInfo(path).path()), 0700u);
}

TEST_F(PreferencesFileTest, AFileThatOthersCouldReadIsProtectedByTheNextWrite)
{
    file.merge({{key, true}});
    ASSERT_EQ(chmod(QFile::encodeName(path).constData(), 0644), 0);
    file.merge({{key, false}});
    EXPECT_EQ(modeOf(path), 0600u);
}

TEST_F(PreferencesFileTest, MakesMissingFoldersOnTheWay)
{
    path = folder.filePath(QStringLiteral("a/b/c/Corvandi.conf"));
    PreferencesFile(path, log).merge({{key, true}});
    EXPECT_EQ(readAnew(), (Values{{key, QStringLiteral("true")}}));
    EXPECT_EQ(modeOf(folder.filePath(QStringLiteral("a"))), 0700u);
}

TEST_F(PreferencesFileTest, LeavesNoOtherFilesBehind)
{
    file.merge({{key, true}});
    file.merge({{key, false}});
    EXPECT_EQ(files(), QStringList{QStringLiteral("Corvandi.conf")});
}

TEST_F(PreferencesFileTest, KeepsWhatOthersHaveWritten)
{
    file.merge({{key, true}});
    write(path, "[General]\nsaveHistory=true\nelsewhere=yes\n\n[Window]\nsize=@Size(10 20)\nlist=a, b\n");
    file.merge({{key, false}});
    const QSettings settings(path, QSettings::IniFormat);
    EXPECT_EQ(settings.value(QStringLiteral("saveHistory")).toString(), QStringLiteral("false"));
    EXPECT_EQ(settings.value(QStringLiteral("elsewhere")).toString(), QStringLiteral("yes"));
    EXPECT_EQ(settings.value(QStringLiteral("Window/size")), QVariant(QSize(10, 20)));
    EXPECT_EQ(settings.value(QStringLiteral("Window/list")).toStringList(),
              (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
}

TEST_F(PreferencesFileTest, ASymbolicLinkStaysOne)
{
    const QString real = folder.filePath(QStringLiteral("kept elsewhere.conf"));
    write(real, "[General]\nsaveHistory=true\n");
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    ASSERT_TRUE(QFile::link(real, path));
    file.merge({{key, false}});
    EXPECT_TRUE(QFileInfo(path).isSymbolicLink());
    EXPECT_EQ(contents(real), "[General]\nsaveHistory=false\n");
}

TEST_F(PreferencesFileTest, AListIsNoValue)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    write(path, "[General]\ninsertion=paste, type\nsaveHistory=false\n");
    EXPECT_EQ(file.read(), (Values{{key, QStringLiteral("false")}}));
}

class DamagedPreferencesTest : public PreferencesFileTest {
protected:
    DamagedPreferencesTest()
    {
        QDir().mkpath(QFileInfo(path).path());
        write(path, damaged);
    }
    const QByteArray damaged =
        QByteArrayLiteral("[General]\nsaveHistory=false\n\xFF\x00 no equals sign \x01\n[broken\nx=y\n");
    const QString aside = path + QStringLiteral(".corrupt");
};

TEST_F(DamagedPreferencesTest, TheReadableLinesCount)
{
    const Values values = file.read();
    ASSERT_TRUE(values.contains(key));
    EXPECT_EQ(values.at(key), QStringLiteral("false"));
    EXPECT_TRUE(log.contains(QStringLiteral("are damaged")));
}

TEST_F(DamagedPreferencesTest, ReadingChangesNothing)
{
    (void)file.read();
    EXPECT_EQ(contents(path), damaged);
    EXPECT_FALSE(QFileInfo::exists(aside));
}

TEST_F(DamagedPreferencesTest, TheFileIsCopiedAsideBeforeItIsReplaced)
{
    (void)file.read();
    file.merge({{QStringLiteral("hotkeyShift"), true}});
    EXPECT_EQ(contents(aside), damaged);
    EXPECT_EQ(modeOf(aside), 0600u);
    EXPECT_TRUE(log.contains(QStringLiteral("copied to ") + aside));
    const Values values = readAnew();
    EXPECT_EQ(values.at(key), QStringLiteral("false"));
    EXPECT_EQ(values.at(QStringLiteral("hotkeyShift")), QStringLiteral("true"));
}

TEST_F(DamagedPreferencesTest, TheCopyIsMadeOnceAndReplacesAnOlderOne)
{
    write(aside, "older");
    (void)file.read();
    file.merge({{key, true}});
    EXPECT_EQ(contents(aside), damaged);
    ASSERT_TRUE(QFile::remove(aside));
    file.merge({{key, false}});
    EXPECT_FALSE(QFileInfo::exists(aside));
}

TEST_F(DamagedPreferencesTest, DamageThatHappensWhileTheProgramRunsIsNoticedToo)
{
    QFile::remove(path);
    (void)file.read();
    file.merge({{key, true}});
    write(path, damaged);
    file.merge({{key, true}});
    EXPECT_EQ(contents(aside), damaged);
}

TEST_F(DamagedPreferencesTest, WithoutACopyTheDamagedFileStays)
{
    ASSERT_TRUE(QDir().mkpath(aside));
    (void)file.read();
    file.merge({{key, true}});
    EXPECT_EQ(contents(path), damaged);
    EXPECT_TRUE(log.contains(QStringLiteral("preferences not saved: ")));
}

TEST_F(PreferencesFileTest, AFolderInPlaceOfTheFileIsLoggedAndLeftAlone)
{
    ASSERT_TRUE(QDir().mkpath(path));
    EXPECT_TRUE(file.read().empty());
    EXPECT_TRUE(log.contains(QStringLiteral("can't read the preferences ") + path));
    file.merge({{key, true}});
    EXPECT_TRUE(log.contains(QStringLiteral("preferences not saved: ") + path));
    EXPECT_TRUE(QFileInfo(path).isDir());
}

TEST_F(PreferencesFileTest, AFileWhereTheFolderShouldBeIsLogged)
{
    write(QFileInfo(path).path(), "in the way");
    file.merge({{key, true}});
    EXPECT_TRUE(log.contains(QStringLiteral("preferences not saved: ")));
    EXPECT_EQ(contents(QFileInfo(path).path()), "in the way");
}

/// With the file at `path` and its folder given these modes, a write must be logged and change nothing.
bool writeIsRefused(const QString& path, mode_t fileMode, mode_t folderMode)
{
    const QByteArray before = contents(path);
    const QString folder = QFileInfo(path).path();
    chmod(QFile::encodeName(path).constData(), fileMode);
    chmod(QFile::encodeName(folder).constData(), folderMode);
    RecordingLog log;
    PreferencesFile file(path, log);
    (void)file.read();
    file.merge({{QStringLiteral("saveHistory"), false}});
    chmod(QFile::encodeName(folder).constData(), 0700);
    chmod(QFile::encodeName(path).constData(), 0600);
    return log.contains(QStringLiteral("preferences not saved: ")) && contents(path) == before &&
           QDir(folder).entryList(QDir::Files | QDir::Hidden).size() == 1;
}

class ProtectedPreferencesTest : public PreferencesFileTest {
protected:
    ProtectedPreferencesTest()
    {
        file.merge({{key, true}});
        for (const QString& given : {folder.path(), QFileInfo(path).path(), path})
            testing::giveAway(QFile::encodeName(given).constData());
    }
};

TEST_F(ProtectedPreferencesTest, AReadOnlyFolderIsLoggedAndLeftAlone)
{
    EXPECT_TRUE(testing::withoutPrivileges([&] { return writeIsRefused(path, 0600, 0500); }));
}

TEST_F(ProtectedPreferencesTest, AReadOnlyFileIsLoggedAndLeftAlone)
{
    EXPECT_TRUE(testing::withoutPrivileges([&] { return writeIsRefused(path, 0400, 0700); }));
}

TEST_F(ProtectedPreferencesTest, AnUnreadableFileIsLoggedAndLeftAlone)
{
    EXPECT_TRUE(testing::withoutPrivileges([&] { return writeIsRefused(path, 0200, 0700); }));
}

/// While it lives, files of this process can't grow beyond a size, as on a disk that fills up: the
/// write that reaches it is cut short, the next one fails.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
        : formerHandler_(signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &former_);
        const rlimit limited{bytes, former_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &former_);
        signal(SIGXFSZ, formerHandler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit former_{};
    void (*formerHandler_)(int);
};

TEST_F(PreferencesFileTest, ADiskThatFillsUpAtAnyPointLeavesTheFormerFile)
{
    // Long enough that it is this file, not a lock file beside it, that meets the limit first.
    const QString longText(400, QLatin1Char('x'));
    file.merge({{QStringLiteral("long"), longText}, {key, true}});
    const QByteArray former = contents(path);
    const QByteArray complete =
        "[General]\nhotkeyShift=true\nlong=" + longText.toLatin1() + "\nsaveHistory=false\n";
    const std::map<QString, DefaultsValue> changes{{key, false}, {QStringLiteral("hotkeyShift"), true}};
    size_t refused = 0;
    // Coarse through the long line, then every single byte.
    for (qsizetype room = 0; room < complete.size(); room += room < complete.size() - 40 ? 19 : 1) {
        const FileSizeLimit full(static_cast<rlim_t>(room));
        file.merge(changes);
        ++refused;
        ASSERT_EQ(contents(path), former) << "with room for " << room << " bytes";
    }
    const FileSizeLimit enough(static_cast<rlim_t>(complete.size()));
    file.merge(changes);
    EXPECT_EQ(contents(path), complete);
    EXPECT_EQ(log.lines().size(), refused) << "one line for each refused write";
    EXPECT_EQ(files(), QStringList{QStringLiteral("Corvandi.conf")});
}

} // namespace
} // namespace corvandi
