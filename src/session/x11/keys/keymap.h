#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace corvandi {

/// A key together with the modifiers that are held with it (the server's bits).
struct Stroke {
    uint8_t keyCode;
    uint8_t modifiers;

    friend bool operator==(const Stroke&, const Stroke&) = default;
};

/// How the modifiers select one of a key's levels.
struct KeyType {
    struct Entry {
        uint8_t modifiers;
        uint8_t level;
    };

    /// The modifiers that matter to keys of this type; combinations without an entry are level 0.
    uint8_t modifiers = 0;
    uint8_t levelCount = 1;
    std::vector<Entry> entries;

    [[nodiscard]] uint8_t level(uint8_t held) const;
};

/// What is on a key: `width` levels for each of up to four groups.
struct KeySymbols {
    std::array<uint8_t, 4> types{};
    /// As in the protocol: the number of groups, and what stands for a group that the key hasn't got.
    uint8_t groupInfo = 0;
    uint8_t width = 0;
    std::vector<uint32_t> symbols;
    /// The modifiers that the key is.
    uint8_t modifiers = 0;

    [[nodiscard]] uint8_t groupCount() const { return groupInfo & 0x0F; }
    /// No symbol and no modifier: pressing it means nothing to any program.
    [[nodiscard]] bool isEmpty() const;
    /// It changes what other keys mean while it is down. Layouts give some keys this effect without making
    /// them one of the server's modifiers: AltGr usually.
    [[nodiscard]] bool isHeldModifier() const;
    /// The group that counts on this key while `group` is the keyboard's.
    [[nodiscard]] uint8_t effectiveGroup(uint8_t group) const;
    /// The symbol at a level of an existing group; 0 (no symbol) beyond the key's levels.
    [[nodiscard]] uint32_t symbol(uint8_t group, uint8_t level) const;

    friend bool operator==(const KeySymbols&, const KeySymbols&) = default;
};

/// One keyboard's map: a value, read from the server at one moment.
class Keymap {
public:
    Keymap() = default;
    Keymap(uint8_t firstKeyCode, std::vector<KeyType> types, std::vector<KeySymbols> keys);

    [[nodiscard]] uint8_t firstKeyCode() const { return firstKeyCode_; }
    /// The last key code; below the first one when there are no keys.
    [[nodiscard]] int lastKeyCode() const { return firstKeyCode_ + static_cast<int>(keys_.size()) - 1; }
    [[nodiscard]] const std::vector<KeyType>& types() const { return types_; }
    [[nodiscard]] const KeySymbols& key(uint8_t keyCode) const { return keys_[index(keyCode)]; }
    [[nodiscard]] KeySymbols& key(uint8_t keyCode) { return keys_[index(keyCode)]; }
    [[nodiscard]] bool contains(uint8_t keyCode) const;

    /// The keys that mean nothing, in ascending order.
    [[nodiscard]] std::vector<uint8_t> emptyKeys() const;
    /// The empty key that is pressed where some key has to be pressed that means nothing: the last one.
    /// Nothing when the layout uses every key.
    [[nodiscard]] std::optional<uint8_t> neutralKey() const;
    /// A key that is exactly `modifier` (one of the server's bits) and bears one of its usual symbols.
    [[nodiscard]] std::optional<uint8_t> modifierKey(uint8_t modifier) const;

private:
    [[nodiscard]] size_t index(uint8_t keyCode) const { return static_cast<size_t>(keyCode) - firstKeyCode_; }

    uint8_t firstKeyCode_ = 8;
    std::vector<KeyType> types_;
    std::vector<KeySymbols> keys_;
};

} // namespace corvandi
