#pragma once

#include "platform/keyboard.h"
#include "platform/linux/x11/character_map.h"

#include <string>
#include <vector>

namespace corvandi {

/// One movement of one key.
struct KeyAction {
    uint8_t keyCode;
    KeyDirection direction;

    friend bool operator==(const KeyAction&, const KeyAction&) = default;
};

/// The keys to move for a text, beginning and ending with all modifiers up. A modifier stays down while
/// neighbouring characters need it. Characters that are not on the keyboard are left out.
[[nodiscard]] std::vector<KeyAction> planText(const std::u32string& text, const CharacterMap& characters,
                                              const Keymap& keymap);

/// The keys of the modifiers in `mask`; modifiers that the layout has no key for are left out.
[[nodiscard]] std::vector<uint8_t> modifierKeys(uint8_t mask, const Keymap& keymap);

} // namespace corvandi
