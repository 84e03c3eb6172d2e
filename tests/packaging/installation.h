#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <string>

namespace corvandi::testing {

/// Files and folders that this process and its children make are writable by the group, as many systems have
/// it for their users, as long as this lives.
class FilesOfAGroup {
public:
    FilesOfAGroup();
    FilesOfAGroup(const FilesOfAGroup&) = delete;
    FilesOfAGroup& operator=(const FilesOfAGroup&) = delete;
    ~FilesOfAGroup();

private:
    mode_t former_;
};

/// A new folder for temporary files, removed with this.
class TemporaryFolder {
public:
    /// Throws HarnessError when there can't be one.
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// How long installing or packaging may take: seconds, but they read and write all of a program with its
/// debug information, which takes its time on a slow disk.
constexpr std::chrono::seconds packagingTime{120};

/// The build as it is installed below /usr, in a folder that stands for the root of a system. Whoever
/// installed it lets their group write to what they make (umask 002).
class Installation {
public:
    /// Throws HarnessError when it can't be installed.
    Installation();

    /// A file or folder of the installation, by its path on the system.
    [[nodiscard]] std::filesystem::path operator/(const std::filesystem::path& path) const
    {
        return root_.path() / path.relative_path();
    }
    [[nodiscard]] const std::filesystem::path& root() const { return root_.path(); }

private:
    TemporaryFolder root_;
};

/// Throws HarnessError when the file can't be read.
[[nodiscard]] std::string contentOf(const std::filesystem::path& file);

} // namespace corvandi::testing
