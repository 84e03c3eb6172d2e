#include "system/desktop/autostart_login_item.h"

#include "system/files/posix_file_system.h"

#include "base/error.h"
#include "system/files/real_folder.h"
#include "system/preferences/unprivileged.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::namesIn;
using testing::setMode;

const QString program = QStringLiteral("/opt/my programs/corvandi");
const QByteArray switchedOff = "[Desktop Entry]\nType=Application\nName=Corvandi\nExec=corvandi\n"
                               "X-GNOME-Autostart-enabled=false\n";

/// The sentence with which `change` fails; empty when it does not.
template<class Change>
std::string failureOf(Change change)
{
    try {
        change();
    } catch (const Error& error) {
        return error.what();
    }
    return {};
}

class AutostartLoginItemTest : public ::testing::Test {
protected:
    AutostartLoginItemTest()
    {
        for (const QString& system : {first, second})
            QDir().mkpath(system);
    }
    static QString in(const QString& directory)
    {
        return directory + QStringLiteral("/io.corvandi.Corvandi.desktop");
    }
    void putByUser(const QByteArray& content) const
    {
        QDir().mkpath(user);
        folder.put(in(user), content);
    }

    testing::RealFolder folder;
    const QString user = folder.path("home/config/autostart");
    const QString first = folder.path("first/autostart");
    const QString second = folder.path("second/autostart");
    PosixFileSystem files;
    AutostartLoginItem item{{user, {first, second}}, program, files};
};

TEST_F(AutostartLoginItemTest, WithoutAnEntryItIsOff)
{
    EXPECT_FALSE(item.isEnabled());
    item.disable();
    EXPECT_FALSE(QDir(user).exists()) << "nothing to switch off, nothing to write";
}

TEST_F(AutostartLoginItemTest, SwitchingOnMakesFolderAndEntry)
{
    item.enable();
    EXPECT_TRUE(item.isEnabled());
    EXPECT_EQ(contentOf(in(user)), startingEntry(program));
    EXPECT_THAT(namesIn(user), ElementsAre(QStringLiteral("io.corvandi.Corvandi.desktop")));
    item.enable();
    EXPECT_TRUE(item.isEnabled());
}

TEST_F(AutostartLoginItemTest, SwitchingOffRemovesTheEntryAndNothingElse)
{
    item.enable();
    folder.put(user + QStringLiteral("/other.desktop"), "kept");
    item.disable();
    EXPECT_FALSE(item.isEnabled());
    EXPECT_THAT(namesIn(user), ElementsAre(QStringLiteral("other.desktop")));
    item.disable();
    EXPECT_FALSE(item.isEnabled());
}

TEST_F(AutostartLoginItemTest, AnEntryThatTheDesktopHasSwitchedOffIsOffAndIsWrittenAnew)
{
    for (const QByteArray& off : {switchedOff, hiddenEntry()}) {
        putByUser(off);
        EXPECT_FALSE(item.isEnabled());
        item.disable();
        EXPECT_EQ(contentOf(in(user)), off) << "it is off already";
        item.enable();
        EXPECT_TRUE(item.isEnabled());
        EXPECT_EQ(contentOf(in(user)), startingEntry(program));
    }
}

TEST_F(AutostartLoginItemTest, AProgramThatHasMovedIsNamedAnew)
{
    putByUser(startingEntry(QStringLiteral("/old/corvandi")));
    EXPECT_TRUE(item.isEnabled());
    item.enable();
    EXPECT_EQ(contentOf(in(user)), startingEntry(program));
}

TEST_F(AutostartLoginItemTest, AnEntryOfTheSystemIsOnUntilTheUsersHidesIt)
{
    folder.put(in(second), startingEntry(program));
    EXPECT_TRUE(item.isEnabled());
    item.disable();
    EXPECT_FALSE(item.isEnabled());
    EXPECT_EQ(contentOf(in(user)), hiddenEntry());
    EXPECT_EQ(contentOf(in(second)), startingEntry(program));
    item.enable();
    EXPECT_TRUE(item.isEnabled());
    item.disable();
    EXPECT_FALSE(item.isEnabled());
}

TEST_F(AutostartLoginItemTest, TheSystemsEntryWithMorePrecedenceCounts)
{
    folder.put(in(first), hiddenEntry());
    folder.put(in(second), startingEntry(program));
    EXPECT_FALSE(item.isEnabled());
    item.enable();
    item.disable();
    EXPECT_FALSE(item.isEnabled());
    EXPECT_THAT(namesIn(user), IsEmpty()) << "nothing would start the program";
}

TEST_F(AutostartLoginItemTest, AnEntryThatCantBeReadIsOff)
{
    QDir().mkpath(in(user));
    EXPECT_FALSE(item.isEnabled());
    EXPECT_EQ(failureOf([&] { item.enable(); }), "The autostart entry can't be written: Is a directory.");
}

TEST_F(AutostartLoginItemTest, AnEntryThatIsALinkIsWrittenWhereItLeads)
{
    QDir().mkpath(user);
    folder.put(folder.path("managed"), switchedOff);
    folder.link(in(user), QFile::encodeName(folder.path("managed")).constData());
    item.enable();
    EXPECT_EQ(contentOf(folder.path("managed")), startingEntry(program));
    item.disable();
    EXPECT_THAT(namesIn(user), IsEmpty());
    EXPECT_EQ(contentOf(folder.path("managed")), startingEntry(program));
}

TEST_F(AutostartLoginItemTest, AFileInThePlaceOfTheFolderIsExplained)
{
    QDir().mkpath(folder.path("home"));
    folder.put(folder.path("home/config"), "a file");
    EXPECT_FALSE(item.isEnabled());
    EXPECT_EQ(failureOf([&] { item.enable(); }), "The autostart entry can't be written: File exists.");
}

TEST_F(AutostartLoginItemTest, AReadOnlyFolderIsExplainedAndKeepsWhatItHas)
{
    putByUser({});
    item.enable();
    setMode(in(user), 0644);
    setMode(folder.path(), 0755);
    setMode(user, 0555);
    AutostartLoginItem moved({user, {}}, QStringLiteral("/elsewhere"), files);
    const bool isRight = testing::withoutPrivileges([&] {
        return failureOf([&] { moved.enable(); }) ==
                   "The autostart entry can't be written: Permission denied." &&
               failureOf([&] { moved.disable(); }) ==
                   "The autostart entry can't be removed: Permission denied." &&
               moved.isEnabled();
    });
    setMode(user, 0755);
    EXPECT_TRUE(isRight);
    EXPECT_EQ(contentOf(in(user)), startingEntry(program));
}

/// Sets an environment variable for the time of a test.
class Variable {
public:
    Variable(const char* name, const QString& value)
        : name_(name)
        , before_(qgetenv(name))
    {
        qputenv(name, value.toLocal8Bit());
    }
    ~Variable() { qputenv(name_, before_); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* name_;
    QByteArray before_;
};

TEST(AutostartFolders, AreThoseOfTheConfiguration)
{
    const Variable home("XDG_CONFIG_HOME", QStringLiteral("/my/config"));
    const Variable system("XDG_CONFIG_DIRS", QStringLiteral("/one:/my/config:/two"));
    const auto folders = AutostartFolders::fromEnvironment();
    EXPECT_EQ(folders.user, QStringLiteral("/my/config/autostart"));
    EXPECT_THAT(folders.system,
                ElementsAre(QStringLiteral("/one/autostart"), QStringLiteral("/two/autostart")));
}

TEST(AutostartFolders, HaveDefaults)
{
    const Variable home("XDG_CONFIG_HOME", {});
    const Variable system("XDG_CONFIG_DIRS", {});
    const auto folders = AutostartFolders::fromEnvironment();
    EXPECT_EQ(folders.user, QDir::homePath() + QStringLiteral("/.config/autostart"));
    EXPECT_THAT(folders.system, ElementsAre(QStringLiteral("/etc/xdg/autostart")));
}

} // namespace
} // namespace corvandi
