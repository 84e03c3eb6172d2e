#include "platform/linux/x11/character_map.h"

#include "platform/linux/x11/modifier_masks.h"

#include <xkbcommon/xkbcommon.h>

namespace corvandi {
namespace {

/// Symbols above this one are characters: the rest of the symbol is the code point.
constexpr uint32_t unicodeSymbols = 0x01000000;

constexpr bool isOnKeypad(uint32_t symbol)
{
    return symbol >= XKB_KEY_KP_Space && symbol <= XKB_KEY_KP_Equal;
}

/// The character that a symbol types; 0 when it types none.
char32_t characterOf(uint32_t symbol)
{
    if (symbol == XKB_KEY_Return)
        return U'\n';
    if (symbol == XKB_KEY_Tab)
        return U'\t';
    if (isOnKeypad(symbol))
        return 0;
    const char32_t character = xkb_keysym_to_utf32(symbol);
    const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
    return isControl ? 0 : character;
}

uint32_t symbolAt(const Keymap& keymap, uint8_t keyCode, uint8_t modifiers, uint8_t group)
{
    const KeySymbols& key = keymap.key(keyCode);
    if (key.groupCount() == 0 || key.modifiers != 0)
        return XKB_KEY_NoSymbol;
    const uint8_t effective = key.effectiveGroup(group);
    const uint8_t type = key.types.at(effective);
    if (type >= keymap.types().size())
        return XKB_KEY_NoSymbol;
    return key.symbol(effective, keymap.types()[type].level(modifiers));
}

bool isAvoided(const Stroke& stroke, const std::optional<X11Chord>& avoided)
{
    return avoided && stroke.keyCode == avoided->keyCode &&
           (stroke.modifiers & avoided->modifiers) == avoided->modifiers;
}

} // namespace

std::vector<uint8_t> reachableModifiers(const Keymap& keymap)
{
    std::vector<uint8_t> reachable{x11_mask::none};
    if (keymap.modifierKey(x11_mask::shift))
        reachable.push_back(x11_mask::shift);
    if (keymap.modifierKey(x11_mask::level3)) {
        reachable.push_back(x11_mask::level3);
        if (keymap.modifierKey(x11_mask::shift))
            reachable.push_back(x11_mask::shift | x11_mask::level3);
    }
    return reachable;
}

uint32_t symbolFor(char32_t character)
{
    if (character == U'\n')
        return XKB_KEY_Return;
    if (character == U'\t')
        return XKB_KEY_Tab;
    const bool isLatin1 =
        (character >= 0x20 && character <= 0x7E) || (character >= 0xA0 && character <= 0xFF);
    return isLatin1 ? character : unicodeSymbols | character;
}

CharacterMap::CharacterMap(const Keymap& keymap, const TypingConditions& conditions)
{
    for (const uint8_t modifiers : reachableModifiers(keymap)) {
        for (int code = keymap.firstKeyCode(); code <= keymap.lastKeyCode(); ++code) {
            const Stroke stroke{static_cast<uint8_t>(code), modifiers};
            const auto held = static_cast<uint8_t>(modifiers | conditions.standingModifiers);
            const char32_t character = characterOf(symbolAt(keymap, stroke.keyCode, held, conditions.group));
            if (character != 0 && !isAvoided(stroke, conditions.avoided))
                strokes_.emplace(character, stroke);
        }
    }
}

std::optional<Stroke> CharacterMap::find(char32_t character) const
{
    const auto found = strokes_.find(character);
    if (found == strokes_.end())
        return std::nullopt;
    return found->second;
}

std::u32string CharacterMap::missing(const std::u32string& text) const
{
    std::u32string missing;
    for (const char32_t character : text) {
        if (!strokes_.contains(character) && missing.find(character) == std::u32string::npos)
            missing.push_back(character);
    }
    return missing;
}

} // namespace corvandi
