#include "installation.h"

#include "harness/child_process.h"

#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace corvandi::testing {

using harness::HarnessError;

FilesOfAGroup::FilesOfAGroup()
    : former_(::umask(002))
{
}

FilesOfAGroup::~FilesOfAGroup()
{
    ::umask(former_);
}

TemporaryFolder::TemporaryFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "corvandi-test.XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw HarnessError("no folder for temporary files");
    path_ = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

Installation::Installation()
{
    const FilesOfAGroup filesOfAGroup;
    (void)harness::outputOf({"env", "DESTDIR=" + root_.path().string(), CORVANDI_CMAKE, "--install",
                             CORVANDI_BUILD, "--prefix", "/usr", "--strip"},
                            packagingTime);
}

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw HarnessError("can't read " + file.string());
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace corvandi::testing
