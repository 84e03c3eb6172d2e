#pragma once

#include <QString>

namespace corvandi {

/// Whether the host is written as an address of this very machine (127.0.0.0/8, ::1), or as "localhost".
/// Whoever connects to "localhost" replaces it by such an address: a resolver may say anything.
///
/// Thread: any.
[[nodiscard]] bool isLoopbackHost(const QString& host);

} // namespace corvandi
