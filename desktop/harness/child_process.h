#pragma once

#include "harness/file_descriptor.h"
#include "harness/waiting.h"

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace corvandi::harness {

/// What a child's standard input is: nothing to read, or a pipe that `closeInput` ends.
enum class ChildInput { nothing, pipe };

struct ChildOptions {
    /// Standard output and standard error go there, appended; to the caller's own when absent.
    std::optional<std::filesystem::path> output = std::nullopt;
    ChildInput input = ChildInput::nothing;
};

/// A program that runs beside the caller. Destroying it kills it.
class ChildProcess {
public:
    /// Starts `command`, which is looked up in PATH, with the caller's environment.
    /// Throws HarnessError when it cannot be started.
    explicit ChildProcess(const std::vector<std::string>& command, const ChildOptions& options = {});
    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&& other) = delete;
    ~ChildProcess();

    [[nodiscard]] pid_t id() const { return id_; }
    void signal(int number) const;
    void closeInput() { input_.close(); }
    /// The exit status, or 128 plus the number of the signal that ended it; nothing when it still runs
    /// at `deadline`.
    [[nodiscard]] std::optional<int> waitUntilEnded(Clock::time_point deadline = Clock::now() + patience);
    [[nodiscard]] bool isRunning() { return !waitUntilEnded(Clock::now()); }

private:
    pid_t id_ = -1;
    FileDescriptor exit_;
    FileDescriptor input_;
    std::optional<int> status_;
};

/// Runs a command to its end and returns what it wrote to standard output.
/// Throws HarnessError when it fails or takes longer than `limit`.
[[nodiscard]] std::string outputOf(const std::vector<std::string>& command,
                                   std::chrono::seconds limit = patience);

} // namespace corvandi::harness
