#pragma once

#include "session/x11/keys/keymap.h"

namespace corvandi::testing {

/// Key codes of the keymaps below.
namespace made {
inline constexpr uint8_t first = 8;
inline constexpr uint8_t shift = 8;
inline constexpr uint8_t level3 = 9;
inline constexpr uint8_t a = 10;
inline constexpr uint8_t b = 11;
inline constexpr uint8_t keypad1 = 12;
inline constexpr uint8_t one = 13;
inline constexpr uint8_t space = 14;
inline constexpr uint8_t enter = 15;
inline constexpr uint8_t tab = 16;
inline constexpr uint8_t numLock = 17;
inline constexpr uint8_t empty = 18;
inline constexpr uint8_t control = 20;
inline constexpr uint8_t neutral = 21;
} // namespace made

/// A small keyboard: a, b (with @ on AltGr), 1 and ! on two levels, a keypad's 1, Space, Return, Tab, and
/// three keys without symbols, of which the last is the neutral one.
[[nodiscard]] Keymap smallKeymap();
/// The same without an AltGr key.
[[nodiscard]] Keymap keymapWithoutLevel3();

} // namespace corvandi::testing
