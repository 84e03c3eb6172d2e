#pragma once

#include <cstdint>
#include <optional>

namespace corvandi {

/// The X key code (the kernel's key number plus 8) of the physical key that has this virtual key code;
/// nothing for keys that X can't name, such as Fn.
[[nodiscard]] std::optional<uint8_t> x11KeyCode(uint16_t virtualKey);
/// The virtual key code of the physical key with this X key code; nothing for keys that have none.
[[nodiscard]] std::optional<uint16_t> virtualKeyCode(uint32_t x11KeyCode);

} // namespace corvandi
