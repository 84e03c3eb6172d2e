#pragma once

#include "platform/linux/x11/keymap.h"
#include "platform/linux/x11/x11_connection.h"

#include <optional>

namespace corvandi {

/// Reads the map of one keyboard, in one round trip. Nothing when the device or the server has gone.
[[nodiscard]] std::optional<Keymap> readKeymap(const X11Connection& connection, uint16_t device);

} // namespace corvandi
