#pragma once

#include "base/file_descriptor.h"
#include "base/main_queue.h"
#include "ports/system_log.h"
#include "system/log/error_output.h"

#include <QByteArray>

#include <memory>
#include <mutex>
#include <string>

namespace corvandi {

/// Sends lines to the system's log daemon as datagrams in the form of syslog(3), with the name
/// "corvandi", the facility "user" and the severity "notice".
///
/// The library's own syslog() waits for as long as the daemon is stuck; this never waits: what the
/// daemon can't take now is lost, as is everything while there is none. A daemon that starts later, or
/// anew, is found with the next line.
///
/// Thread: one at a time.
class SyslogSocket {
public:
    explicit SyslogSocket(std::string path)
        : path_(std::move(path))
    {
    }

    /// `line` has no line end.
    void writeLine(const QByteArray& line);

private:
    [[nodiscard]] bool put(const QByteArray& datagram) const;
    void connectToDaemon();

    std::string path_;
    FileDescriptor socket_;
};

/// The log on Linux: every line goes to the system's log daemon and to the standard error output.
///
/// A call never waits for either of them. Without a daemon the lines are on the standard error output
/// only; a stuck daemon, a full pipe or a closed descriptor loses lines, each without the other. Line
/// breaks and other control characters within a message become spaces; a message of more than some
/// 2,000 bytes is cut.
///
/// Thread: any, except the audio thread.
class LinuxSystemLog : public SystemLog {
public:
    /// `errorOutput` stays the caller's and must stay open as long as the log; `daemonSocket` is where
    /// the log daemon listens.
    explicit LinuxSystemLog(int errorOutput = STDERR_FILENO, std::string daemonSocket = "/dev/log");

protected:
    void writeLine(const QString& line) override;

private:
    std::mutex mutex_;
    ErrorOutput errorOutput_;
    SyslogSocket daemon_;
};

/// Sends what Qt has to say (warnings and worse, and information; not debug output) to `log` instead
/// of the standard error output, for as long as the returned object lives; it must not outlive `log`.
/// Messages may come from any thread; one that arises while another one is being logged on the same
/// thread goes to the standard error output (Qt sees to that).
///
/// Qt has a single message handler for the whole process, so there is at most one such registration
/// at a time. Thread: main thread only.
[[nodiscard]] std::unique_ptr<Registration> routeQtMessages(SystemLog& log);

} // namespace corvandi
