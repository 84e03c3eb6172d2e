#pragma once

#include "session/x11/keys/keymap.h"
#include "session/x11/keys/x11_connection.h"

#include <span>
#include <vector>

namespace corvandi {

/// A run of neighbouring keys, both ends included.
struct KeyRange {
    uint8_t first;
    uint8_t last;

    friend bool operator==(const KeyRange&, const KeyRange&) = default;
};

/// The fewest runs that cover `keys` (ascending) and otherwise only keys that are the same on all
/// keyboards, so that writing a run to all of them changes nothing else.
[[nodiscard]] std::vector<KeyRange> rangesToWrite(const std::vector<uint8_t>& keys, const Keymap& wanted,
                                                  std::span<const Keymap> keyboards);

/// Puts `keys` of `wanted` onto the master keyboard and all keyboards that belong to it. Each run of keys
/// is one change, and every change costs every client of the server time: one, unless keyboards with
/// different layouts are plugged in. False when the server refuses.
[[nodiscard]] bool writeKeys(const X11Connection& connection, const std::vector<uint8_t>& keys,
                             const Keymap& wanted);

} // namespace corvandi
