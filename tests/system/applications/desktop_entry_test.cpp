#include "system/applications/desktop_entry.h"

#include <gtest/gtest.h>

using namespace corvandi;

namespace {

std::optional<DesktopEntry> parse(const QByteArray& content)
{
    return parseDesktopEntry(QStringLiteral("id"), content);
}

QString executableOf(const QByteArray& commandLine)
{
    return parse("[Desktop Entry]\nType=Application\nExec=" + commandLine + "\n").value().executable;
}

} // namespace

TEST(DesktopEntry, TheKeysOfTheMainGroupAreRead)
{
    const auto entry = parse("# comment\n[Desktop Entry]\nType=Application\nStartupWMClass = Editor \n"
                             "Exec=/usr/bin/editor --new %U\nCategories=Utility;TextEditor;\n"
                             "MimeType=text/plain;inode/directory\nNoDisplay=true\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->id, QStringLiteral("id"));
    EXPECT_EQ(entry->startupWmClass, QStringLiteral("Editor"));
    EXPECT_EQ(entry->executable, QStringLiteral("editor"));
    EXPECT_EQ(entry->categories, (QStringList{QStringLiteral("Utility"), QStringLiteral("TextEditor")}));
    EXPECT_EQ(entry->mimeTypes,
              (QStringList{QStringLiteral("text/plain"), QStringLiteral("inode/directory")}));
    EXPECT_TRUE(entry->noDisplay);
    EXPECT_FALSE(entry->hidden);
}

TEST(DesktopEntry, OtherGroupsAreIgnored)
{
    const auto entry = parse("[Desktop Entry]\nType=Application\nExec=editor\n"
                             "[Desktop Action new-window]\nExec=launcher --new\nType=Link\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->executable, QStringLiteral("editor"));
}

TEST(DesktopEntry, LinksFoldersAndOtherFilesAreNoApplications)
{
    EXPECT_FALSE(parse("[Desktop Entry]\nType=Link\nURL=https://example.org\n"));
    EXPECT_FALSE(parse("[Desktop Entry]\nExec=editor\n"));
    EXPECT_FALSE(parse(""));
    EXPECT_FALSE(parse(QByteArray("\0\xff=\n[", 5)));
}

TEST(DesktopEntry, ADeletedOneIsKeptInOrderToShadowOthers)
{
    const auto entry = parse("[Desktop Entry]\nHidden=true\n");
    ASSERT_TRUE(entry);
    EXPECT_TRUE(entry->hidden);
}

TEST(DesktopEntry, TheExecutableIsFoundBehindQuotesAndEnvironmentSettings)
{
    EXPECT_EQ(executableOf("\"/opt/My Editor/editor\" %F"), QStringLiteral("editor"));
    EXPECT_EQ(executableOf("env LANG=C A=b /usr/bin/tool -x"), QStringLiteral("tool"));
    EXPECT_EQ(executableOf("env"), QString());
    EXPECT_EQ(executableOf(""), QString());
}

namespace {

QString nameIn(const QStringList& locales, const QByteArray& names)
{
    return parseDesktopEntry(QStringLiteral("id"), "[Desktop Entry]\nType=Application\n" + names, locales)
        .value()
        .name;
}

DesktopEntry menuEntry(const QByteArray& keys)
{
    return parse("[Desktop Entry]\nType=Application\n" + keys).value();
}

const QStringList austrian{QStringLiteral("de_AT"), QStringLiteral("de")};
const QStringList ubuntu{QStringLiteral("ubuntu"), QStringLiteral("GNOME")};

} // namespace

TEST(DesktopEntry, TheNameIsTheOneInTheBestLanguage)
{
    const QByteArray names = "Name[de]=Dateien\nName=Files\nName[fr]=Fichiers\nName[de_AT]=Akten\n";
    EXPECT_EQ(nameIn(austrian, names), QStringLiteral("Akten"));
    EXPECT_EQ(nameIn({QStringLiteral("de_CH"), QStringLiteral("de")}, names), QStringLiteral("Dateien"));
    EXPECT_EQ(nameIn({QStringLiteral("it")}, names), QStringLiteral("Files"));
    EXPECT_EQ(nameIn({}, names), QStringLiteral("Files"));
}

TEST(DesktopEntry, WithoutANameThatSuitsItIsEmpty)
{
    EXPECT_EQ(nameIn(austrian, "Name[fr]=Fichiers\nGenericName=x\nName[=y\n"), QString());
}

TEST(DesktopEntry, EscapesInTheNameAreCarriedOut)
{
    EXPECT_EQ(nameIn({}, R"(Name=a\sb\\sc\td\q\)"), QStringLiteral("a b\\sc\tdq"));
}

TEST(DesktopEntry, TheIconAndTheRequiredProgramAreRead)
{
    const auto entry = menuEntry("Icon=editor-icon\nTryExec=/opt/editor\n");
    EXPECT_EQ(entry.icon, QStringLiteral("editor-icon"));
    EXPECT_EQ(entry.requiredProgram, QStringLiteral("/opt/editor"));
}

TEST(DesktopEntry, MenusShowAllButHiddenAndUnusableOnes)
{
    EXPECT_TRUE(menuEntry("").isInMenu({}));
    EXPECT_FALSE(menuEntry("NoDisplay=true\n").isInMenu({}));
    EXPECT_FALSE(menuEntry("Hidden=true\n").isInMenu({}));
    auto unusable = menuEntry("");
    unusable.isUnusable = true;
    EXPECT_FALSE(unusable.isInMenu({}));
}

TEST(DesktopEntry, MenusOfOtherDesktopsMayShowOtherOnes)
{
    EXPECT_TRUE(menuEntry("OnlyShowIn=XFCE;GNOME;\n").isInMenu(ubuntu));
    EXPECT_FALSE(menuEntry("OnlyShowIn=XFCE;\n").isInMenu(ubuntu));
    EXPECT_FALSE(menuEntry("OnlyShowIn=XFCE;\n").isInMenu({}));
    EXPECT_FALSE(menuEntry("NotShowIn=GNOME;\n").isInMenu(ubuntu));
    EXPECT_TRUE(menuEntry("NotShowIn=KDE;\n").isInMenu(ubuntu));
}

TEST(DesktopEntry, TheMoreSpecificDesktopDecides)
{
    EXPECT_TRUE(menuEntry("OnlyShowIn=ubuntu;\nNotShowIn=GNOME;\n").isInMenu(ubuntu));
    EXPECT_FALSE(menuEntry("OnlyShowIn=GNOME;\nNotShowIn=ubuntu;\n").isInMenu(ubuntu));
}
