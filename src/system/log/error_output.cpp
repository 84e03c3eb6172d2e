#include "system/log/error_output.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <string>

namespace corvandi {
namespace {

/// Keeps the signal of a broken pipe from this thread, and takes back one that came meanwhile. The
/// program's handling of the signal is not ours to change.
class BrokenPipeGuard {
public:
    BrokenPipeGuard()
    {
        sigemptyset(&brokenPipe_);
        sigaddset(&brokenPipe_, SIGPIPE);
        sigset_t pending{};
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &brokenPipe_, &former_);
    }
    ~BrokenPipeGuard()
    {
        const timespec atOnce{};
        if (!wasPending_) {
            while (sigtimedwait(&brokenPipe_, nullptr, &atOnce) == -1 && errno == EINTR) {
            }
        }
        pthread_sigmask(SIG_SETMASK, &former_, nullptr);
    }
    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;

private:
    sigset_t brokenPipe_{};
    sigset_t former_{};
    bool wasPending_ = false;
};

bool canTakeMore(int descriptor)
{
    pollfd request{descriptor, POLLOUT, 0};
    return poll(&request, 1, 0) == 1 && (request.revents & POLLOUT) != 0;
}

bool wroteAll(ssize_t written, const QByteArray& text)
{
    return written == static_cast<ssize_t>(text.size());
}

} // namespace

ErrorOutput::ErrorOutput(int descriptor)
    : descriptor_(descriptor)
    , kind_(Kind::file)
{
    struct stat status {};
    if (fstat(descriptor, &status) != 0)
        return;
    if (S_ISSOCK(status.st_mode)) {
        kind_ = Kind::socket;
    } else if (!S_ISREG(status.st_mode)) {
        kind_ = Kind::stream;
        const std::string name = "/proc/self/fd/" + std::to_string(descriptor);
        reopened_ = FileDescriptor(open(name.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    }
}

void ErrorOutput::writeLine(const QByteArray& line)
{
    const BrokenPipeGuard guard;
    if (lost_ > 0) {
        if (!put("Corvandi: lines of the log lost here: " + QByteArray::number(qulonglong{lost_}) + '\n')) {
            ++lost_;
            return;
        }
        lost_ = 0;
    }
    if (!put(line + '\n'))
        ++lost_;
}

bool ErrorOutput::put(const QByteArray& text) const
{
    const auto size = static_cast<size_t>(text.size());
    switch (kind_) {
    case Kind::file:
        return wroteAll(write(descriptor_, text.constData(), size), text);
    case Kind::socket:
        return wroteAll(send(descriptor_, text.constData(), size, MSG_DONTWAIT | MSG_NOSIGNAL), text);
    case Kind::stream:
        if (reopened_.isOpen())
            return wroteAll(write(reopened_.get(), text.constData(), size), text);
        // Another user's terminal can't be opened again. It says whether it has room for a line.
        return canTakeMore(descriptor_) && wroteAll(write(descriptor_, text.constData(), size), text);
    }
    return false;
}

} // namespace corvandi
