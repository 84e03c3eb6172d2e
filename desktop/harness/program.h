#pragma once

#include "harness/child_process.h"
#include "harness/growing_file.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace corvandi::harness {

/// A program under test with its log.
class Program {
public:
    /// Starts it; its standard output and error go into `log`.
    Program(const std::vector<std::string>& command, const std::filesystem::path& log);

    [[nodiscard]] ChildProcess& process() { return process_; }
    [[nodiscard]] std::string log() const { return log_.contents(); }
    /// The place in the log up to which it has been written.
    [[nodiscard]] size_t mark() const { return log_.contents().size(); }
    /// Waits for a whole line behind `mark` that contains `part`, and returns it. Throws HarnessError,
    /// with the log, when there is none.
    std::string waitForLine(const std::string& part, size_t mark = 0,
                            std::chrono::seconds limit = patience) const;
    /// Waits for so many such lines.
    void waitForLines(const std::string& part, size_t count, size_t mark = 0) const;
    /// The first such line, if there is one already.
    [[nodiscard]] std::optional<std::string> lineWith(const std::string& part, size_t mark = 0) const;

private:
    GrowingFile log_;
    ChildProcess process_;
};

/// The first number in a text that is followed by "ms".
[[nodiscard]] std::optional<std::chrono::milliseconds> millisecondsIn(const std::string& line);

} // namespace corvandi::harness
