#include "platform/linux/workspace/desktop_entry.h"

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
