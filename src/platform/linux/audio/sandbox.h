#pragma once

#include <QString>

#include <optional>

namespace corvandi {

/// The name under which a sandbox (Flatpak or Snap) runs this program and the desktop keeps its
/// permissions; nothing when it does not run in one.
[[nodiscard]] std::optional<QString> sandboxedApplicationId();

} // namespace corvandi
