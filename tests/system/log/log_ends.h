#pragma once

#include "base/file_descriptor.h"

#include <QByteArray>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <array>
#include <optional>
#include <string>

namespace corvandi::testing {

/// A pipe whose reading end the test holds.
class Pipe {
public:
    Pipe()
    {
        std::array<int, 2> ends{-1, -1};
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        reader_ = FileDescriptor(ends[0]);
        writer_ = FileDescriptor(ends[1]);
        fcntl(reader_.get(), F_SETFL, O_NONBLOCK);
    }

    [[nodiscard]] int writer() const { return writer_.get(); }
    void closeReader() { reader_ = FileDescriptor(); }
    /// Everything that is in the pipe now.
    [[nodiscard]] QByteArray takeAll() const
    {
        QByteArray all;
        std::array<char, 4096> block{};
        for (ssize_t count = 0; (count = read(reader_.get(), block.data(), block.size())) > 0;)
            all.append(block.data(), count);
        return all;
    }

private:
    FileDescriptor reader_;
    FileDescriptor writer_;
};

/// The receiving side of a log daemon, listening at `path` as long as it lives.
class LogDaemon {
public:
    explicit LogDaemon(std::string path)
        : path_(std::move(path))
        , socket_(socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path_.copy(address.sun_path, sizeof address.sun_path - 1);
        if (bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            throw std::runtime_error("can't listen at " + path_);
    }
    ~LogDaemon() { unlink(path_.c_str()); }
    LogDaemon(const LogDaemon&) = delete;
    LogDaemon& operator=(const LogDaemon&) = delete;

    [[nodiscard]] std::optional<QByteArray> take() const
    {
        std::array<char, 8192> block{};
        const ssize_t count = recv(socket_.get(), block.data(), block.size(), 0);
        if (count < 0)
            return std::nullopt;
        return QByteArray(block.data(), count);
    }

private:
    std::string path_;
    FileDescriptor socket_;
};

} // namespace corvandi::testing
