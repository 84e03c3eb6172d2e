// The Debian package.

#include "installation.h"

#include "harness/child_process.h"

#include <gmock/gmock.h>

#include <sstream>

namespace corvandi::testing {
namespace {

using harness::outputOf;
using ::testing::AnyOfArray;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

/// Of a line such as "new-name | old-name".
std::vector<std::string> namesIn(const std::string& line)
{
    std::istringstream words(line);
    std::vector<std::string> names;
    for (std::string word; words >> word;) {
        if (word != "|")
            names.push_back(word);
    }
    return names;
}

/// The packages that packaging/debian-packages.txt lists for a program that runs, each with all its names.
std::vector<std::vector<std::string>> packagesForRunning()
{
    std::istringstream lines(contentOf(CORVANDI_SOURCE "/packaging/debian-packages.txt"));
    std::vector<std::vector<std::string>> packages;
    bool isWanted = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('['))
            isWanted = line == "[run]";
        else if (isWanted && !line.empty() && !line.starts_with('#'))
            packages.push_back(namesIn(line));
    }
    return packages;
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
    /// Each name between ", " and ",", or followed by a version.
    [[nodiscard]] static std::string dependsOf()
    {
        std::string depends = field("Depends");
        depends.pop_back();
        return ", " + depends + ",";
    }

    static inline std::unique_ptr<TemporaryFolder> folder;
    static inline std::filesystem::path package;
};

TEST_F(PackageTest, IsNamedAsDebianNamesPackages)
{
    EXPECT_EQ(package.filename().string() + "\n",
              outputOf({"dpkg-deb", "--showformat", "${Package}_${Version}_${Architecture}.deb\n", "--show",
                        package}));
}

TEST_F(PackageTest, TheVersionNamesTheReleaseThatItFits)
{
    // Without a number: Debian's testing and unstable.
    std::string release = outputOf({"sh", "-c", ". /etc/os-release && echo $ID$VERSION_ID"});
    if (release.starts_with("debian"))
        release = release == "debian\n" ? "sid\n" : release.replace(0, 6, "deb");

    EXPECT_EQ(field("Version"), CORVANDI_VERSION "+" + release);
}

TEST_F(PackageTest, ReplacesThatOfAnEarlierReleaseAndIsReplacedByTheNextVersion)
{
    const std::string version = field("Version").substr(0, field("Version").find('\n'));
    for (const char* earlier : {CORVANDI_VERSION, CORVANDI_VERSION "+deb11"})
        EXPECT_NO_THROW((void)outputOf({"dpkg", "--compare-versions", earlier, "lt", version})) << earlier;
    for (const char* later : {CORVANDI_VERSION "+z", CORVANDI_VERSION ".1+deb11"})
        EXPECT_NO_THROW((void)outputOf({"dpkg", "--compare-versions", version, "lt", later})) << later;
}

TEST_F(PackageTest, DependsOnWhatTheProgramLinks)
{
    for (const char* library : {"libqt6widgets6 (", "libqt6svg6 (", "libpocketsphinx3 (", "libpulse0 ("})
        EXPECT_THAT(field("Depends"), HasSubstr(library));
}

TEST_F(PackageTest, DependsOnWhatTheProgramNeedsWithoutLinkingIt)
{
    const auto packages = packagesForRunning();
    EXPECT_THAT(packages, Contains(ElementsAre("pocketsphinx-en-us")));
    for (const auto& names : packages) {
        std::vector<::testing::Matcher<std::string>> dependencies;
        for (const std::string& name : names)
            dependencies.push_back(HasSubstr(", " + name + ","));
        EXPECT_THAT(dependsOf(), AnyOfArray(dependencies));
    }
}

TEST_F(PackageTest, DependsOnThePackageThatHoldsThePluginForSvgIcons)
{
    const std::string owner = outputOf({"dpkg-query", "--search", "*/plugins/iconengines/libqsvgicon.so"});
    EXPECT_THAT(dependsOf(), HasSubstr(", " + owner.substr(0, owner.find(':')) + ","));
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
