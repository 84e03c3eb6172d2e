#include "platform/linux/log/syslog_socket.h"

#include <QString>

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>

#include <array>
#include <cerrno>
#include <ctime>

namespace corvandi {
namespace {

/// The month names of the protocol are English whatever the locale.
constexpr std::array<const char*, 12> months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

QByteArray timestamp()
{
    const time_t now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    return QString::asprintf("%s %2d %02d:%02d:%02d", months.at(static_cast<size_t>(local.tm_mon)),
                             local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec)
        .toLatin1();
}

} // namespace

void SyslogSocket::writeLine(const QByteArray& line)
{
    const QByteArray datagram = '<' + QByteArray::number(LOG_USER | LOG_NOTICE) + '>' + timestamp() +
                                " corvandi[" + QByteArray::number(getpid()) + "]: " + line;
    if (put(datagram) || errno == EAGAIN)
        return;
    connectToDaemon();
    (void)put(datagram);
}

bool SyslogSocket::put(const QByteArray& datagram) const
{
    return send(socket_.get(), datagram.constData(), static_cast<size_t>(datagram.size()),
                MSG_DONTWAIT | MSG_NOSIGNAL) >= 0;
}

void SyslogSocket::connectToDaemon()
{
    sockaddr_un address{};
    if (path_.size() >= sizeof address.sun_path)
        return;
    address.sun_family = AF_UNIX;
    path_.copy(address.sun_path, path_.size());
    socket_ = FileDescriptor(socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    // A refused connection shows in the next send.
    (void)connect(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

} // namespace corvandi
