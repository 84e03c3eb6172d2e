#pragma once

#include "platform/linux/xcb/xcb_connection.h"

#include <optional>
#include <string>
#include <vector>

namespace corvandi {

/// A question for a window's property that is already on its way; several can be under way at once and
/// cost one round trip together. Each must be asked for its answer exactly once.
struct PropertyRequest {
    xcb_get_property_cookie_t cookie;
};

/// Asks for the first `maxBytes` (rounded up to whole words) of a property of any type.
[[nodiscard]] PropertyRequest requestProperty(const XcbConnection& x, xcb_window_t window,
                                              xcb_atom_t property, uint32_t maxBytes = 4096);

/// The bytes of a property with 8-bit items; empty when it is absent, of another format or the window
/// has gone.
[[nodiscard]] std::string textOf(const XcbConnection& x, PropertyRequest request);
/// The items of a property with 32-bit items (windows, atoms, numbers); empty as above.
[[nodiscard]] std::vector<uint32_t> wordsOf(const XcbConnection& x, PropertyRequest request);

} // namespace corvandi
