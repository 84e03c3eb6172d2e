#pragma once

#include "platform/linux/x11/keymap.h"
#include "platform/linux/x11/x11_connection.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace corvandi {

/// Reads the map of one keyboard, in one round trip. Nothing when the device or the server has gone.
[[nodiscard]] std::optional<Keymap> readKeymap(const X11Connection& connection, uint16_t device);
/// Reads the maps of several keyboards, in one round trip for all; without those that have gone.
[[nodiscard]] std::vector<Keymap> readKeymaps(const X11Connection& connection,
                                              const std::vector<uint16_t>& devices);

} // namespace corvandi
