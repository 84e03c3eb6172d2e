#pragma once

#include "ports/keyboard.h"
#include "session/x11/keys/spare_keys.h"

#include <string>
#include <string_view>
#include <vector>

namespace corvandi {

/// The characters that a person would type for this UTF-16 text, in order, as code points.
///
/// A line break of any kind (LF, CR, CR LF) is U+000A, the Return key; U+0009 is the Tab key. What no
/// keyboard types is left out, so that the rest of the text arrives: other control characters (some
/// keys that produce them, such as Escape, would do harm), lone surrogates and noncharacters.
[[nodiscard]] std::u32string typedCharacters(std::u16string_view text);

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
