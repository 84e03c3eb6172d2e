#pragma once

#include <QString>
#include <QUrl>

namespace corvandi {

/// Whether the host is written as an address of this very machine (127.0.0.0/8, ::1), or as "localhost".
/// Whoever connects to "localhost" replaces it by such an address: a resolver may say anything.
[[nodiscard]] bool isLoopbackHost(const QString& host);

/// Whether anything may be fetched from `url`: over HTTPS, or over HTTP from this very machine. Never with
/// a user name or password in it.
[[nodiscard]] bool isSafeAddress(const QUrl& url);

/// Whether what came from `from` may name `to` as the place to go on: a safe address, and none without
/// encryption once there was encryption.
[[nodiscard]] bool mayLeadTo(const QUrl& from, const QUrl& to);

/// The address to connect to. Over HTTP "localhost" is this machine whatever a resolver says, so it is
/// replaced by 127.0.0.1.
[[nodiscard]] QUrl connectionAddress(const QUrl& url);

} // namespace corvandi
