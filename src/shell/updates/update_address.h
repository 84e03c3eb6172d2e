#pragma once

#include <QUrl>

namespace corvandi {

/// Whether updates may come from `url`: over HTTPS, or over HTTP from this very machine (127.0.0.0/8,
/// ::1, "localhost"). Never with a user name or password in it.
[[nodiscard]] bool isUpdateAddress(const QUrl& url);

/// Whether what came from `from` may name `to` as the place to go on: an update address, and none
/// without encryption once there was encryption.
[[nodiscard]] bool mayLeadTo(const QUrl& from, const QUrl& to);

/// The address to connect to. Over HTTP "localhost" is this machine whatever a resolver says, so it is
/// replaced by 127.0.0.1.
[[nodiscard]] QUrl connectionAddress(const QUrl& url);

} // namespace corvandi
