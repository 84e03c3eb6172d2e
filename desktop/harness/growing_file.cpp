#include "harness/growing_file.h"

#include <sys/inotify.h>

#include <array>
#include <fstream>
#include <sstream>

namespace corvandi::harness {

GrowingFile::GrowingFile(std::filesystem::path path)
    : path_(std::move(path))
{
    std::ofstream created(path_, std::ios::trunc);
    created.close();
    writes_ = FileDescriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (!created || ::inotify_add_watch(writes_.get(), path_.c_str(), IN_MODIFY) < 0)
        throw HarnessError("cannot create and watch " + path_.string());
}

std::string GrowingFile::contents() const
{
    std::ostringstream contents;
    contents << std::ifstream(path_).rdbuf();
    return contents.str();
}

bool GrowingFile::waitUntil(const Condition& condition, Clock::time_point deadline) const
{
    while (!condition(contents())) {
        if (!waitUntilReadable(writes_.get(), deadline))
            return condition(contents());
        forgetWrites();
    }
    return true;
}

void GrowingFile::waitUntilQuiet(std::chrono::milliseconds time) const
{
    forgetWrites();
    while (waitUntilReadable(writes_.get(), Clock::now() + time))
        forgetWrites();
}

void GrowingFile::forgetWrites() const
{
    std::array<char, 4096> ignored{};
    while (::read(writes_.get(), ignored.data(), ignored.size()) > 0) {
    }
}

} // namespace corvandi::harness
