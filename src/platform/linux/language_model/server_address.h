#pragma once

#include <QString>
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

} // namespace corvandi
