#include "platform/linux/x11/key_plan.h"

#include "platform/linux/x11/modifier_masks.h"

#include <algorithm>

namespace corvandi {

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
