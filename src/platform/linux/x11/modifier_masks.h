#pragma once

#include <cstdint>
#include <vector>

namespace corvandi {

/// The server's eight modifier bits. The keyboard configuration that every distribution ships puts
/// Alt, NumLock, Super and AltGr where they are here.
namespace x11_mask {
inline constexpr uint8_t none = 0x00;
inline constexpr uint8_t shift = 0x01;
inline constexpr uint8_t lock = 0x02;
inline constexpr uint8_t control = 0x04;
inline constexpr uint8_t alt = 0x08;
inline constexpr uint8_t numLock = 0x10;
inline constexpr uint8_t super = 0x40;
inline constexpr uint8_t level3 = 0x80;
inline constexpr uint8_t all = 0xFF;
} // namespace x11_mask

/// What stays on after its key was struck; such a key does no harm while it is down.
inline constexpr uint8_t lockModifiers = x11_mask::lock | x11_mask::numLock;

/// The server's bits for `modifier_flags`; other flags have none.
[[nodiscard]] uint8_t x11Mask(uint64_t flags);
/// The `modifier_flags` for the server's bits; other bits have none.
[[nodiscard]] uint64_t modifierFlags(uint8_t mask);
/// The bits of the modifier key with this virtual key code; none for every other key. Both Alt keys count
/// for Alt, whatever a layout has put on the right one.
[[nodiscard]] uint8_t modifierOf(uint16_t virtualKey);
/// All masks that contain `required`: 128 for one modifier, 256 for none.
[[nodiscard]] std::vector<uint32_t> masksContaining(uint8_t required);

} // namespace corvandi
