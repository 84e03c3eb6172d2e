#include "session/x11/keys/keyboard_state.h"

#include "session/x11/keys/keymap_reader.h"
#include "session/x11/keys/watched_chord.h"
#include "session/x11/xcb_connection.h"

#include <array>
#include <utility>

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

namespace {

constexpr uint32_t filters = XCB_XKB_BOOL_CTRL_SLOW_KEYS | XCB_XKB_BOOL_CTRL_BOUNCE_KEYS;
constexpr uint16_t stickyOptions = XCB_XKB_AX_OPTION_TWO_KEYS | XCB_XKB_AX_OPTION_LATCH_TO_LOCK;

} // namespace

std::optional<KeyboardHelps> readHelps(const X11Connection& connection)
{
    const auto cookie = xcb_xkb_get_controls(connection.get(), XCB_XKB_ID_USE_CORE_KBD);
    const auto controls = owned(xcb_xkb_get_controls_reply(connection.get(), cookie, nullptr));
    if (!controls)
        return std::nullopt;
    return KeyboardHelps{controls->enabledControls & filters,
                         static_cast<uint16_t>(controls->accessXOption & stickyOptions)};
}

KeyboardHelps harmless(KeyboardHelps helps)
{
    helps.filters = 0;
    helps.stickyOptions = static_cast<uint16_t>(helps.stickyOptions & ~XCB_XKB_AX_OPTION_TWO_KEYS);
    return helps;
}

void setHelps(const X11Connection& connection, const KeyboardHelps& helps)
{
    // The other values are not looked at.
    constexpr std::array<uint8_t, sizeof(xcb_xkb_get_controls_reply_t::perKeyRepeat)> noRepeats{};
    constexpr uint32_t enabled = XCB_XKB_CONTROL_CONTROLS_ENABLED;
    constexpr uint32_t options = XCB_XKB_BOOL_CTRL_STICKY_KEYS;
    xcb_xkb_set_controls(connection.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                         helps.stickyOptions, filters, helps.filters, enabled | options, 0, 0, 0, 0, 0, 0, 0,
                         0, 0, 0, 0, 0, 0, 0, noRepeats.data());
}

namespace {

constexpr bool areFree(uint8_t heldModifiers)
{
    return (heldModifiers & ~lockModifiers) == 0;
}

void wantChanges(const X11Connection& connection, uint16_t parts)
{
    xcb_xkb_select_events_details_t details{};
    details.affectState = XCB_XKB_STATE_PART_MODIFIER_BASE;
    details.stateDetails = parts;
    xcb_xkb_select_events_aux(connection.get(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0,
                              0, 0, 0, &details);
}

} // namespace

/// Keeps the callback; the watch forgets it when this goes.
class FreeKeysWatch::Waiter : public Registration {
public:
    explicit Waiter(std::function<void()> work)
        : callback(std::make_shared<std::function<void()>>(std::move(work)))
    {
    }

    const std::shared_ptr<std::function<void()>> callback;
};

std::unique_ptr<Registration> FreeKeysWatch::add(std::function<void()> callback)
{
    auto waiter = std::make_unique<Waiter>(std::move(callback));
    // Asked for before the state is read, so that no release is missed in between.
    wantChanges(connection_, XCB_XKB_STATE_PART_MODIFIER_BASE);
    const auto state = readState(connection_);
    waiting_.push_back(waiter->callback);
    if (!state || areFree(state->held))
        report();
    return waiter;
}

void FreeKeysWatch::handle(const xcb_generic_event_t& event)
{
    if ((event.response_type & 0x7F) != connection_.xkbFirstEvent())
        return;
    const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
    if (state.xkbType == XCB_XKB_STATE_NOTIFY && areFree(state.baseMods))
        report();
}

void FreeKeysWatch::report()
{
    wantChanges(connection_, 0);
    connection_.flush();
    for (const auto& waiter : std::exchange(waiting_, {})) {
        // One callback may take back another one's registration.
        if (const auto callback = waiter.lock())
            (*callback)();
    }
}

} // namespace corvandi
