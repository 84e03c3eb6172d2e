#pragma once

#include <cstdint>

namespace corvandi {

/// Modifier bits of a keyboard event, in the numbering that is used throughout the program and in the
/// preferences. Adapters translate at their edge.
namespace modifier_flags {
inline constexpr uint64_t command = 0x100000;
inline constexpr uint64_t option = 0x80000;
inline constexpr uint64_t control = 0x40000;
inline constexpr uint64_t shift = 0x20000;
} // namespace modifier_flags

/// Virtual key codes that the logic itself names.
namespace virtual_key {
inline constexpr uint16_t none = 0;
inline constexpr uint16_t v = 9;
inline constexpr uint16_t space = 49;
} // namespace virtual_key

/// A key together with the modifiers that must be held with it.
struct KeyChord {
    uint16_t keyCode = virtual_key::space;
    uint64_t requiredFlags = modifier_flags::option;

    friend bool operator==(const KeyChord&, const KeyChord&) = default;
};

} // namespace corvandi
