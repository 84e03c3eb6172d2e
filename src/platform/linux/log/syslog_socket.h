#pragma once

#include "platform/linux/log/file_descriptor.h"

#include <QByteArray>

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

} // namespace corvandi
