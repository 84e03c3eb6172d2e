#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <cstdint>
#include <optional>

namespace corvandi {

/// What the server does for people who can't use a keyboard as others do, as far as it would change or end
/// with keys that are typed for them.
struct KeyboardHelps {
    /// Keys count only when they have been down for a while (slow keys), or only once in a while (bounce
    /// keys): typed ones would not arrive.
    uint32_t filters = 0;
    /// Options of sticky keys. With one of them, two keys at once switch sticky keys off, as a person means
    /// it; typed capitals don't.
    uint16_t stickyOptions = 0;

    friend bool operator==(const KeyboardHelps&, const KeyboardHelps&) = default;
};

/// Nothing when the server has gone. One round trip.
[[nodiscard]] std::optional<KeyboardHelps> readHelps(const X11Connection& connection);
/// `helps` without what typing would suffer from or disturb.
[[nodiscard]] KeyboardHelps harmless(KeyboardHelps helps);
/// Queues the request.
void setHelps(const X11Connection& connection, const KeyboardHelps& helps);

} // namespace corvandi
