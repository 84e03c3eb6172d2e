#include "harness/stopped_thread.h"

#include <sys/ptrace.h>
#include <sys/wait.h>

#include <filesystem>
#include <fstream>

namespace corvandi::harness {
namespace {

pid_t threadNamed(pid_t process, const std::string& name)
{
    const std::filesystem::path threads = "/proc/" + std::to_string(process) + "/task";
    for (const auto& thread : std::filesystem::directory_iterator(threads)) {
        std::ifstream file(thread.path() / "comm");
        std::string itsName;
        if (std::getline(file, itsName) && itsName == name)
            return std::stoi(thread.path().filename().string());
    }
    throw HarnessError("there is no thread called " + name);
}

} // namespace

StoppedThread::StoppedThread(pid_t process, const std::string& name)
    : thread_(threadNamed(process, name))
{
    if (::ptrace(PTRACE_SEIZE, thread_, nullptr, nullptr) != 0 ||
        ::ptrace(PTRACE_INTERRUPT, thread_, nullptr, nullptr) != 0 ||
        ::waitpid(thread_, nullptr, __WALL) != thread_)
        throw HarnessError("the thread " + name + " can't be stopped");
}

StoppedThread::~StoppedThread()
{
    ::ptrace(PTRACE_DETACH, thread_, nullptr, nullptr);
}

} // namespace corvandi::harness
