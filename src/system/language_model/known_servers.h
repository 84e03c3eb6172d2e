#pragma once

#include "system/net/listener_owner.h"

#include <QString>
#include <QStringList>
#include <QUrl>

#include <vector>

namespace corvandi {

/// The addresses behind what the preferences name as the model server, such as "http://127.0.0.1:11434"
/// or "localhost:8080/v1", in the order in which they are to be tried. "localhost" stands for 127.0.0.1
/// and ::1, whatever a resolver says. A path is what comes before "/v1/…" in the server's addresses.
///
/// Empty when it is no address of this machine, not plain HTTP, or has a user name, query or fragment.
[[nodiscard]] std::vector<QUrl> serverAddresses(const QString& text);

/// The server of this port on 127.0.0.1.
[[nodiscard]] QUrl serverAddress(quint16 port);

/// The address of `resource` (such as "models") in the protocol that all these servers speak.
[[nodiscard]] QUrl protocolAddress(const QUrl& server, const QString& resource);

/// Whose the program behind a server's address is.
[[nodiscard]] ListenerOwner ownerOf(const QUrl& server, const SocketTables& sockets);

/// The ports at which model servers listen unless they are told otherwise, in the order in which they are
/// preferred.
[[nodiscard]] const std::vector<quint16>& usualServerPorts();

/// Where programs and services are installed.
struct InstallationFolders {
    QStringList programs;
    QStringList services;

    /// Those of the environment: PATH, and the system's and the user's folders of systemd units.
    [[nodiscard]] static InstallationFolders ofThisMachine();
};

/// Whether a known model server is installed: an executable in a folder of programs or a service. Looks
/// at the disk.
///
/// Thread: any.
[[nodiscard]] bool isModelServerInstalled(const InstallationFolders& folders);

/// The machine's memory in bytes, as far as the kernel hands it out.
[[nodiscard]] quint64 usableMemory();

} // namespace corvandi
