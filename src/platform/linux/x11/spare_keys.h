#pragma once

#include "platform/linux/x11/keymap.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace corvandi {

/// The keys that a layout leaves empty, and what we have put onto them: characters that the layout
/// lacks. Up to four on a key, reached with Shift and AltGr. The last empty key is never used: it is
/// the one that others press because it means nothing.
///
/// Only plans: whoever writes a planned map to the server says so with `adopt`.
class SpareKeys {
public:
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
