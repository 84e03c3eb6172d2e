#include "system/process/single_instance.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

using namespace corvandi;

namespace {

class InstanceFolderTest : public ::testing::Test {
protected:
    InstanceFolderTest() { qputenv("XDG_RUNTIME_DIR", ""); }
    ~InstanceFolderTest() override { qputenv("XDG_RUNTIME_DIR", runtime_); }

    [[nodiscard]] QString fallback() const
    {
        return temporary.filePath(QStringLiteral("corvandi-") + QString::number(getuid()));
    }

    QTemporaryDir temporary;

private:
    QByteArray runtime_ = qgetenv("XDG_RUNTIME_DIR");
};

} // namespace

TEST_F(InstanceFolderTest, TheSessionsRuntimeFolderIsUsed)
{
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(temporary.path()));
    EXPECT_EQ(instanceFolder(QStringLiteral("/nowhere")), temporary.path());
}

TEST_F(InstanceFolderTest, WithoutOneAPrivateFolderIsMade)
{
    ASSERT_EQ(instanceFolder(temporary.path()), fallback());
    struct stat status = {};
    ASSERT_EQ(stat(QFile::encodeName(fallback()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & ALLPERMS, mode_t{S_IRWXU});
    EXPECT_EQ(instanceFolder(temporary.path()), fallback()) << "the second time it exists already";
}

TEST_F(InstanceFolderTest, ARuntimeFolderThatIsMissingIsNotUsed)
{
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(temporary.filePath(QStringLiteral("missing"))));
    EXPECT_EQ(instanceFolder(temporary.path()), fallback());
}

TEST_F(InstanceFolderTest, AFolderThatOthersMayEnterIsNotUsed)
{
    ASSERT_EQ(mkdir(QFile::encodeName(fallback()).constData(), 0700), 0);
    ASSERT_EQ(chmod(QFile::encodeName(fallback()).constData(), 0755), 0);
    EXPECT_EQ(instanceFolder(temporary.path()), std::nullopt);
}

TEST_F(InstanceFolderTest, ALinkInItsPlaceIsNotUsed)
{
    ASSERT_TRUE(QDir().mkpath(temporary.filePath(QStringLiteral("trap"))));
    ASSERT_TRUE(QFile::link(temporary.filePath(QStringLiteral("trap")), fallback()));
    EXPECT_EQ(instanceFolder(temporary.path()), std::nullopt);
}

TEST_F(InstanceFolderTest, AFolderOfSomebodyElseIsNotUsed)
{
    if (getuid() != 0)
        GTEST_SKIP() << "only root can give a folder away";
    ASSERT_EQ(mkdir(QFile::encodeName(fallback()).constData(), 0700), 0);
    ASSERT_EQ(chown(QFile::encodeName(fallback()).constData(), 12345, 12345), 0);
    EXPECT_EQ(instanceFolder(temporary.path()), std::nullopt);
}
