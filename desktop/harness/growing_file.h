#pragma once

#include "harness/file_descriptor.h"
#include "harness/waiting.h"

#include <filesystem>
#include <functional>
#include <string>

namespace corvandi::harness {

/// A file that another process appends to, with the means to wait for what it writes.
class GrowingFile {
public:
    using Condition = std::function<bool(const std::string& contents)>;

    /// Creates the file, empty. Throws HarnessError when it cannot be created or watched.
    explicit GrowingFile(std::filesystem::path path);

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::string contents() const;
    /// Waits until `condition` holds for the contents, asking again after each write; false when
    /// `deadline` passes first.
    [[nodiscard]] bool waitUntil(const Condition& condition,
                                 Clock::time_point deadline = Clock::now() + patience) const;
    /// Waits until nothing has been written for that long.
    void waitUntilQuiet(std::chrono::milliseconds time) const;

private:
    void forgetWrites() const;

    std::filesystem::path path_;
    FileDescriptor writes_;
};

} // namespace corvandi::harness
