#pragma once

#include "platform/linux/x11/chord_grabs.h"
#include "platform/linux/x11/keymap.h"

#include <optional>
#include <string>
#include <unordered_map>

namespace corvandi {

/// What is known about the keyboard beside its map, when a text is to be typed on it.
struct TypingConditions {
    /// The layout's group that is in use.
    uint8_t group = 0;
    /// Modifiers that are on all the while, such as NumLock.
    uint8_t standingModifiers = 0;
    /// A chord that is no character: pressing it is watched for.
    std::optional<X11Chord> avoided = {};
};

/// The ways to reach a key's levels, the simplest first: the combinations of Shift and AltGr for which
/// the layout has keys.
[[nodiscard]] std::vector<uint8_t> reachableModifiers(const Keymap& keymap);

/// The symbol that stands for a character on a key.
[[nodiscard]] uint32_t symbolFor(char32_t character);

/// Where each character lies on a keyboard: the stroke with the fewest modifiers. The keypad is left
/// out, since what it produces depends on NumLock; dead keys are no characters.
class CharacterMap {
public:
    CharacterMap(const Keymap& keymap, const TypingConditions& conditions);

    [[nodiscard]] std::optional<Stroke> find(char32_t character) const;
    /// The characters of `text` that are not on the keyboard, each once.
    [[nodiscard]] std::u32string missing(const std::u32string& text) const;

private:
    std::unordered_map<char32_t, Stroke> strokes_;
};

} // namespace corvandi
