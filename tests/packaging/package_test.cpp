// The Debian package.

#include "installation.h"

#include "harness/child_process.h"

#include <gmock/gmock.h>

#include <sstream>

namespace corvandi::testing {
namespace {

using harness::outputOf;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

/// The packages that packaging/debian-packages.txt lists for a program that runs.
std::vector<std::string> packagesForRunning()
{
    std::istringstream lines(contentOf(CORVANDI_SOURCE "/packaging/debian-packages.txt"));
    std::vector<std::string> names;
    bool isWanted = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('['))
            isWanted = line == "[run]";
        else if (isWanted && !line.empty() && !line.starts_with('#'))
            names.push_back(line);
    }
    return names;
}

class PackageTest : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        folder = std::make_unique<TemporaryFolder>();
        const FilesOfAGroup filesOfAGroup;
        (void)outputOf(
            {CORVANDI_CPACK, "--config", CORVANDI_BUILD "/CPackConfig.cmake", "-B", folder->path()},
            packagingTime);
        for (const auto& entry : std::filesystem::directory_iterator(folder->path())) {
            if (entry.path().extension() == ".deb")
                package = entry.path();
        }
    }
    static void TearDownTestSuite() { folder.reset(); }

    [[nodiscard]] static std::string field(const std::string& name)
    {
        return outputOf({"dpkg-deb", "--field", package, name});
    }

    static inline std::unique_ptr<TemporaryFolder> folder;
    static inline std::filesystem::path package;
};

TEST_F(PackageTest, IsNamedAsDebianNamesPackages)
{
    EXPECT_THAT(package.filename().string(), MatchesRegex("corvandi_" CORVANDI_VERSION "_[a-z0-9]+\\.deb"));
}

TEST_F(PackageTest, DependsOnWhatTheProgramLinks)
{
    for (const char* library : {"libqt6widgets6 (", "libqt6svg6 (", "libpocketsphinx3 (", "libpulse0 ("})
        EXPECT_THAT(field("Depends"), HasSubstr(library));
}

TEST_F(PackageTest, DependsOnWhatTheProgramNeedsWithoutLinkingIt)
{
    const auto names = packagesForRunning();
    EXPECT_THAT(names, ::testing::Contains("pocketsphinx-en-us"));
    for (const std::string& name : names)
        EXPECT_THAT(", " + field("Depends") + ",", HasSubstr(", " + name + ","));
}

TEST_F(PackageTest, BelongsToRootAndOnlyRootMayWriteToIt)
{
    std::istringstream files(outputOf({"dpkg-deb", "--contents", package}));
    int count = 0;
    for (std::string file; std::getline(files, file); ++count)
        EXPECT_THAT(file, MatchesRegex("(drwxr-xr-x|-rwxr-xr-x|-rw-r--r--) root/root .*"));
    EXPECT_GT(count, 0);
}

TEST_F(PackageTest, RunsNothingWhenItIsInstalledOrRemoved)
{
    const std::string list = "dpkg-deb --ctrl-tarfile " + package.string() + " | tar --list | sort";
    EXPECT_EQ(outputOf({"sh", "-c", list}), "./control\n./md5sums\n");
}

} // namespace
} // namespace corvandi::testing
