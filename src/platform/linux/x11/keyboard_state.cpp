#include "platform/linux/x11/keyboard_state.h"

#include "platform/linux/x11/modifier_masks.h"
#include "platform/linux/x11/xkb_protocol.h"
#include "platform/linux/xcb/xcb_ptr.h"

namespace corvandi {

std::optional<KeyboardState> readState(const X11Connection& connection)
{
    const auto cookie = xcb_xkb_get_state(connection.get(), XCB_XKB_ID_USE_CORE_KBD);
    const auto state = owned(xcb_xkb_get_state_reply(connection.get(), cookie, nullptr));
    if (!state)
        return std::nullopt;
    return KeyboardState{state->deviceID, state->group, state->baseMods, state->latchedMods,
                         state->lockedMods};
}

std::vector<uint8_t> heldModifierKeys(const X11Connection& connection, const Keymap& keymap)
{
    std::vector<uint8_t> held;
    const auto down =
        owned(xcb_query_keymap_reply(connection.get(), xcb_query_keymap(connection.get()), nullptr));
    if (!down)
        return held;
    for (int code = keymap.firstKeyCode(); code <= keymap.lastKeyCode(); ++code) {
        const bool isDown = (down->keys[code / 8] >> (code % 8)) & 1;
        const auto keyCode = static_cast<uint8_t>(code);
        if (isDown && keymap.key(keyCode).isHeldModifier())
            held.push_back(keyCode);
    }
    return held;
}

void setLocks(const X11Connection& connection, uint8_t affected, uint8_t locked)
{
    xcb_xkb_latch_lock_state(connection.get(), XCB_XKB_ID_USE_CORE_KBD, affected, locked, 0, 0, x11_mask::all,
                             0, 0);
}

} // namespace corvandi
