#include "session/x11/keys/keymaps.h"

#include "session/x11/keys/watched_chord.h"

#include <initializer_list>

#include <xkbcommon/xkbcommon-keysyms.h>

namespace corvandi::testing {
namespace {

enum Type : uint8_t { oneLevel, twoLevel, fourLevel, keypad };

std::vector<KeyType> types()
{
    constexpr uint8_t both = x11_mask::shift | x11_mask::level3;
    return {{x11_mask::none, 1, {}},
            {x11_mask::shift, 2, {{x11_mask::shift, 1}}},
            {both, 4, {{x11_mask::shift, 1}, {x11_mask::level3, 2}, {both, 3}}},
            {x11_mask::numLock, 2, {{x11_mask::numLock, 1}}}};
}

KeySymbols key(Type type, std::initializer_list<uint32_t> symbols, uint8_t modifiers = 0)
{
    return {{type, 0, 0, 0}, 1, static_cast<uint8_t>(symbols.size()), symbols, modifiers};
}

} // namespace

Keymap smallKeymap()
{
    return Keymap(
        made::first, types(),
        {key(oneLevel, {XKB_KEY_Shift_L}, x11_mask::shift),
         key(oneLevel, {XKB_KEY_ISO_Level3_Shift}, x11_mask::level3), key(twoLevel, {XKB_KEY_a, XKB_KEY_A}),
         key(fourLevel, {XKB_KEY_b, XKB_KEY_B, XKB_KEY_at, XKB_KEY_dead_acute}),
         key(keypad, {XKB_KEY_KP_End, XKB_KEY_KP_1}), key(twoLevel, {XKB_KEY_1, XKB_KEY_exclam}),
         key(oneLevel, {XKB_KEY_space}), key(oneLevel, {XKB_KEY_Return}), key(oneLevel, {XKB_KEY_Tab}),
         key(oneLevel, {XKB_KEY_Num_Lock}, x11_mask::numLock), KeySymbols{}, KeySymbols{},
         key(oneLevel, {XKB_KEY_Control_L}, x11_mask::control), KeySymbols{}});
}

Keymap keymapWithoutLevel3()
{
    Keymap keymap = smallKeymap();
    keymap.key(made::level3) = key(oneLevel, {XKB_KEY_F1});
    return keymap;
}

} // namespace corvandi::testing
