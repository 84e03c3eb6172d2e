#include "session/x11/keys/key_plan.h"

#include "session/x11/keys/watched_chord.h"

#include <algorithm>

namespace corvandi {
namespace {

constexpr bool isHighSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

constexpr bool isLowSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

constexpr char32_t combine(char16_t high, char16_t low)
{
    return 0x10000 + ((char32_t{high} - 0xD800) << 10) + (char32_t{low} - 0xDC00);
}

constexpr bool canBeTyped(char32_t character)
{
    if (character == U'\n' || character == U'\t')
        return true;
    const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
    const bool isSurrogate = character >= 0xD800 && character < 0xE000;
    const bool isNoncharacter =
        (character & 0xFFFE) == 0xFFFE || (character >= 0xFDD0 && character <= 0xFDEF);
    return !isControl && !isSurrogate && !isNoncharacter;
}

} // namespace

std::u32string typedCharacters(std::u16string_view text)
{
    std::u32string characters;
    for (size_t i = 0; i < text.size(); ++i) {
        const char16_t next = i + 1 < text.size() ? text[i + 1] : u'\0';
        char32_t character = text[i];
        if (isHighSurrogate(text[i]) && isLowSurrogate(next)) {
            character = combine(text[i], next);
            ++i;
        } else if (text[i] == u'\r') {
            character = U'\n';
            i += next == u'\n';
        }
        if (canBeTyped(character))
            characters.push_back(character);
    }
    return characters;
}

std::vector<uint8_t> modifierKeys(uint8_t mask, const Keymap& keymap)
{
    std::vector<uint8_t> keys;
    for (const uint8_t modifier :
         {x11_mask::control, x11_mask::alt, x11_mask::super, x11_mask::shift, x11_mask::level3}) {
        const auto key = (mask & modifier) ? keymap.modifierKey(modifier) : std::nullopt;
        if (key)
            keys.push_back(*key);
    }
    return keys;
}

std::vector<KeyAction> planText(const std::u32string& text, const CharacterMap& characters,
                                const Keymap& keymap)
{
    const auto shift = keymap.modifierKey(x11_mask::shift);
    const auto level3 = keymap.modifierKey(x11_mask::level3);
    std::vector<KeyAction> plan;
    uint8_t held = x11_mask::none;
    const auto hold = [&](uint8_t wanted) {
        const auto change = [&](uint8_t modifier, const std::optional<uint8_t>& key) {
            if (key && ((held ^ wanted) & modifier))
                plan.push_back({*key, (wanted & modifier) ? KeyDirection::down : KeyDirection::up});
        };
        change(x11_mask::shift, shift);
        change(x11_mask::level3, level3);
        held = wanted;
    };
    for (const char32_t character : text) {
        const auto stroke = characters.find(character);
        if (!stroke)
            continue;
        hold(stroke->modifiers);
        plan.push_back({stroke->keyCode, KeyDirection::down});
        plan.push_back({stroke->keyCode, KeyDirection::up});
    }
    hold(x11_mask::none);
    return plan;
}

} // namespace corvandi
