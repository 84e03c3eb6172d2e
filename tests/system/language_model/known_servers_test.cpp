#include "system/language_model/known_servers.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <set>

namespace corvandi {
namespace {

class KnownServersTest : public ::testing::Test {
protected:
    void addFile(const char* name, QFile::Permissions permissions)
    {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_TRUE(file.setPermissions(permissions));
    }

    QTemporaryDir folder;
    const QStringList here{folder.path()};
    const QStringList nowhere{QStringLiteral("/nonexistent")};
};

constexpr auto executable = QFile::ReadOwner | QFile::ExeOwner;

TEST_F(KnownServersTest, WithoutProgramsAndServicesNoneIsInstalled)
{
    EXPECT_FALSE(isModelServerInstalled({}));
    EXPECT_FALSE(isModelServerInstalled({nowhere, nowhere}));
    EXPECT_FALSE(isModelServerInstalled({here, here}));
}

TEST_F(KnownServersTest, AProgramInAFolderIsInstalled)
{
    addFile("llama-server", executable);
    EXPECT_TRUE(isModelServerInstalled({nowhere + here, {}}));
    EXPECT_FALSE(isModelServerInstalled({{}, here}));
}

TEST_F(KnownServersTest, AFileThatCannotBeRunIsNoProgram)
{
    addFile("ollama", QFile::ReadOwner);
    EXPECT_FALSE(isModelServerInstalled({here, {}}));
}

TEST_F(KnownServersTest, AServiceIsInstalled)
{
    addFile("ollama.service", QFile::ReadOwner);
    EXPECT_TRUE(isModelServerInstalled({nowhere, here}));
    EXPECT_FALSE(isModelServerInstalled({here, {}}));
}

TEST_F(KnownServersTest, OtherProgramsDoNotCount)
{
    addFile("ollama-helper", executable);
    EXPECT_FALSE(isModelServerInstalled({here, here}));
}

TEST_F(KnownServersTest, EachUsualPortIsTriedOnce)
{
    const std::vector<quint16>& ports = usualServerPorts();
    EXPECT_EQ(std::set<quint16>(ports.begin(), ports.end()).size(), ports.size());
    EXPECT_EQ(ports.front(), 11434);
}

TEST_F(KnownServersTest, TheMachineHasMemoryAndFoldersOfPrograms)
{
    EXPECT_GT(usableMemory(), quint64{256} << 20);
    qputenv("PATH", "/usr/bin:/bin");
    EXPECT_EQ(InstallationFolders::ofThisMachine().programs,
              (QStringList{QStringLiteral("/usr/bin"), QStringLiteral("/bin")}));
}

} // namespace
} // namespace corvandi
