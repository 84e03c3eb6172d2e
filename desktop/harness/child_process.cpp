#include "harness/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <array>
#include <csignal>
#include <cstring>

extern char** environ;

namespace corvandi::harness {
namespace {

class SpawnActions {
public:
    SpawnActions() { ::posix_spawn_file_actions_init(&actions_); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
    ~SpawnActions() { ::posix_spawn_file_actions_destroy(&actions_); }

    void open(int descriptor, const char* path, int flags)
    {
        ::posix_spawn_file_actions_addopen(&actions_, descriptor, path, flags, 0600);
    }
    void duplicate(int from, int to) { ::posix_spawn_file_actions_adddup2(&actions_, from, to); }
    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

struct Pipe {
    FileDescriptor reading;
    FileDescriptor writing;
};

Pipe makePipe()
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw HarnessError("no pipe");
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

pid_t spawn(const std::vector<std::string>& command, const SpawnActions& actions)
{
    std::vector<char*> arguments;
    for (const std::string& part : command)
        arguments.push_back(const_cast<char*>(part.c_str()));
    arguments.push_back(nullptr);
    pid_t id = -1;
    const int error =
        ::posix_spawnp(&id, arguments.front(), actions.get(), nullptr, arguments.data(), environ);
    if (error != 0)
        throw HarnessError("cannot start " + command.front() + ": " + std::strerror(error));
    return id;
}

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command, const ChildOptions& options)
{
    SpawnActions actions;
    Pipe pipe;
    if (options.input == ChildInput::pipe) {
        pipe = makePipe();
        actions.duplicate(pipe.reading.get(), STDIN_FILENO);
    } else {
        actions.open(STDIN_FILENO, "/dev/null", O_RDONLY);
    }
    if (options.output) {
        actions.open(STDOUT_FILENO, options.output->c_str(), O_WRONLY | O_CREAT | O_APPEND);
        actions.duplicate(STDOUT_FILENO, STDERR_FILENO);
    }
    id_ = spawn(command, actions);
    // glibc 2.36 declares its wrapper without C linkage.
    exit_ = FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, id_, 0)));
    input_ = std::move(pipe.writing);
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : id_(std::exchange(other.id_, -1))
    , exit_(std::move(other.exit_))
    , input_(std::move(other.input_))
    , status_(other.status_)
{
}

ChildProcess::~ChildProcess()
{
    if (id_ < 0 || status_)
        return;
    ::kill(id_, SIGKILL);
    ::waitpid(id_, nullptr, 0);
}

void ChildProcess::signal(int number) const
{
    if (!status_)
        ::kill(id_, number);
}

std::optional<int> ChildProcess::waitUntilEnded(Clock::time_point deadline)
{
    if (status_ || !waitUntilReadable(exit_.get(), deadline))
        return status_;
    int status = 0;
    ::waitpid(id_, &status, 0);
    constexpr int signalBase = 128;
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : signalBase + WTERMSIG(status);
    return status_;
}

namespace {

std::string readToEnd(int descriptor, Clock::time_point deadline)
{
    std::string output;
    std::array<char, 4096> buffer{};
    while (waitUntilReadable(descriptor, deadline)) {
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count <= 0)
            break;
        output.append(buffer.data(), static_cast<size_t>(count));
    }
    return output;
}

} // namespace

std::string outputOf(const std::vector<std::string>& command, std::chrono::seconds limit)
{
    Pipe pipe = makePipe();
    SpawnActions actions;
    actions.open(STDIN_FILENO, "/dev/null", O_RDONLY);
    actions.duplicate(pipe.writing.get(), STDOUT_FILENO);
    const pid_t id = spawn(command, actions);
    pipe.writing.close();
    const auto deadline = Clock::now() + limit;
    std::string output = readToEnd(pipe.reading.get(), deadline);
    if (Clock::now() >= deadline)
        ::kill(id, SIGKILL);
    int status = 0;
    ::waitpid(id, &status, 0);
    if (status != 0)
        throw HarnessError(command.front() + " failed, its output: " + output);
    return output;
}

} // namespace corvandi::harness
