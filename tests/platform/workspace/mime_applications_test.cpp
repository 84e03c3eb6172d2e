#include "platform/linux/workspace/mime_applications.h"

#include <gtest/gtest.h>

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
