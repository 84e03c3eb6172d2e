#pragma once

#include "base/system_log.h"
#include "platform/linux/log/error_output.h"
#include "platform/linux/log/syslog_socket.h"

#include <mutex>

namespace corvandi {

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

} // namespace corvandi
