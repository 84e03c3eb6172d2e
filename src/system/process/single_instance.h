#pragma once

#include "base/file_descriptor.h"
#include "ports/system_log.h"

#include <QDir>
#include <QLocalServer>
#include <QLockFile>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace corvandi {

/// The folder for this session's lock file and socket: $XDG_RUNTIME_DIR, else one of this user's own
/// in `temporaryFolder`, made if need be with no access for others. Nothing when neither is to be had;
/// a folder of that name which belongs to somebody else, is open to others or is a link is not used.
[[nodiscard]] std::optional<QString> instanceFolder(const QString& temporaryFolder);

enum class InstanceRole {
    /// No other instance runs; this one is told when a later one is started.
    first,
    /// Another instance runs and has been told, or does not answer. This one should end.
    second,
};

/// Makes sure that one instance of the program runs in a session. A lock file decides who is first; a
/// socket beside it carries the word of a second start.
///
/// Constructing it takes a millisecond for the first instance. A second one waits for the first's
/// acknowledgement, at most one second, also when that one is hung, just starting or just ending (and
/// is first itself if the lock becomes free in that time). The lock of a killed process is taken over.
/// Where no lock can be kept (no folder, read-only file system) that is logged and every instance is
/// the first. Nothing runs while nobody starts the program again.
///
/// Thread: main thread only; after the application object.
class SingleInstance {
public:
    /// `activated` is called on the main thread, in the first instance, for each later start.
    SingleInstance(SystemLog& log, std::function<void()> activated,
                   std::optional<QString> folder = instanceFolder(QDir::tempPath()));
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    [[nodiscard]] InstanceRole role() const { return role_; }

private:
    void becomeFirstOrTell(const QString& folder);
    [[nodiscard]] bool takeLock();
    void listen();
    void welcome();

    SystemLog& log_;
    std::function<void()> activated_;
    QString socketPath_;
    std::unique_ptr<QLockFile> lock_;
    QLocalServer server_;
    InstanceRole role_ = InstanceRole::first;
};

/// A folder of which only one process at a time may be the owner, whatever session it belongs to: two would
/// overwrite each other's files there. A lock of the kernel's on a file in it decides, so that nothing is
/// left behind by a process that is killed or a machine that loses its power. Where there are no locks
/// (read-only file system) that is logged and the claim granted.
///
/// Thread: main thread only; its own lifetime is that of the claim.
class FolderClaim {
public:
    /// `folder` is created when it is missing, with no access for others.
    FolderClaim(SystemLog& log, const QString& folder);

    [[nodiscard]] bool isGranted() const { return isGranted_; }

private:
    FileDescriptor file_;
    bool isGranted_ = true;
};

} // namespace corvandi
