#pragma once

#include <QString>

#include <optional>

namespace corvandi {

/// The folder for this session's lock file and socket: $XDG_RUNTIME_DIR, else one of this user's own
/// in `temporaryFolder`, made if need be with no access for others. Nothing when neither is to be had;
/// a folder of that name which belongs to somebody else, is open to others or is a link is not used.
[[nodiscard]] std::optional<QString> instanceFolder(const QString& temporaryFolder);

} // namespace corvandi
