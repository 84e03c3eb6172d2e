#pragma once

#include "session/x11/keys/keymap.h"
#include "session/x11/keys/watched_chord.h"

#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

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

/// The keys that a layout leaves empty, and what we have put onto them: characters that the layout
/// lacks. Up to four on a key, reached with Shift and AltGr. The last empty key is never used: it is
/// the one that others press because it means nothing.
///
/// Only plans: whoever writes a planned map to the server says so with `adopt`.
class SpareKeys {
public:
    SpareKeys() = default;
    /// With `ours` on the keys already.
    explicit SpareKeys(std::map<uint8_t, KeySymbols> ours)
        : ours_(std::move(ours))
    {
    }

    /// What is on the keys that we use.
    [[nodiscard]] const std::map<uint8_t, KeySymbols>& ours() const { return ours_; }

    /// Learns what has become of our characters: a change of the layout takes them away.
    void reconcile(const Keymap& present);

    /// `present` with `characters` added on spare keys, beside those that are there; nothing when there
    /// is no room for all of them.
    [[nodiscard]] std::optional<Keymap> withCharacters(const Keymap& present,
                                                       const std::u32string& characters) const;
    /// `present` without anything of ours.
    [[nodiscard]] Keymap withoutCharacters(const Keymap& present) const;

    /// `written` is the map from now on, made from `present` by one of the functions above.
    void adopt(const Keymap& present, const Keymap& written);

private:
    std::map<uint8_t, KeySymbols> ours_;
};

/// The keys that differ, in ascending order. Both maps have the same range.
[[nodiscard]] std::vector<uint8_t> changedKeys(const Keymap& before, const Keymap& after);

} // namespace corvandi
