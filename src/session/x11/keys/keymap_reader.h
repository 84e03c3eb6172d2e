#pragma once

#include "session/x11/keys/keymap.h"
#include "session/x11/keys/x11_connection.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <vector>

// The header has a member that is named like a keyword of C++.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
#ifdef __clang__
#pragma clang diagnostic pop
#endif

namespace corvandi {

/// Reads the map of one keyboard, in one round trip. Nothing when the device or the server has gone.
[[nodiscard]] std::optional<Keymap> readKeymap(const X11Connection& connection, uint16_t device);
/// Reads the maps of several keyboards, in one round trip for all; without those that have gone.
[[nodiscard]] std::vector<Keymap> readKeymaps(const X11Connection& connection,
                                              const std::vector<uint16_t>& devices);

} // namespace corvandi
