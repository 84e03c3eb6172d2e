#pragma once

#include <QByteArray>
#include <QHostAddress>

namespace corvandi {

/// Whose program listens at an address of this machine.
enum class ListenerOwner {
    /// Nobody listens there, as far as the kernel says.
    nobody,
    /// This user, or a service of the system.
    userOrSystem,
    /// Another user, who can read whatever is sent there.
    somebodyElse,
};

/// The sockets of this machine, as the kernel lists them: /proc/net/tcp and tcp6.
struct SocketTables {
    QByteArray ipv4;
    QByteArray ipv6;

    /// Reads them anew; empty where they can't be read. Thread: any.
    [[nodiscard]] static SocketTables ofThisMachine();

    /// `address` is one of this machine. Who listens at all of its addresses listens there, too. When
    /// several do, the one who may least be trusted counts.
    [[nodiscard]] ListenerOwner ownerOf(const QHostAddress& address, quint16 port) const;
};

} // namespace corvandi
