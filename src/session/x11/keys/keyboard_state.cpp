#include "session/x11/keys/keyboard_state.h"

#include "session/x11/keys/keymap_reader.h"
#include "session/x11/keys/watched_chord.h"
#include "session/x11/xcb_connection.h"

#include <xcb/xcbext.h>
#include <xcb/xinput.h>

#include <array>
#include <span>
#include <utility>

namespace corvandi {

StateRequest requestState(const X11Connection& connection)
{
    return {xcb_xkb_get_state(connection.get(), XCB_XKB_ID_USE_CORE_KBD)};
}

std::optional<KeyboardState> stateOf(const X11Connection& connection, StateRequest request)
{
    const auto state = connection.reply(xcb_xkb_get_state_reply, request.cookie);
    if (!state)
        return std::nullopt;
    return KeyboardState{state->deviceID, state->group, state->baseMods, state->latchedMods,
                         state->lockedMods};
}

std::optional<KeyboardState> readState(const X11Connection& connection)
{
    return stateOf(connection, requestState(connection));
}

namespace {

KeySet keySet(std::span<const uint8_t, 32> bytes)
{
    KeySet keys;
    for (size_t key = 0; key < keys.size(); ++key)
        keys[key] = (bytes[key / 8] >> (key % 8)) & 1;
    return keys;
}

} // namespace

KeySet keysDown(const X11Connection& connection, xcb_query_keymap_cookie_t question)
{
    const auto down = connection.reply(xcb_query_keymap_reply, question);
    return down ? keySet(down->keys) : KeySet();
}

KeySet keysDown(const X11Connection& connection)
{
    return keysDown(connection, xcb_query_keymap(connection.get()));
}

KeysRequest requestKeysDownOn(const X11Connection& connection, const std::vector<uint16_t>& devices)
{
    KeysRequest request;
    for (const uint16_t device : devices)
        request.cookies.push_back(
            xcb_input_query_device_state(connection.get(), static_cast<uint8_t>(device)));
    return request;
}

KeySet keysDownOn(const X11Connection& connection, const KeysRequest& request)
{
    KeySet down;
    for (const auto& cookie : request.cookies) {
        const auto state = connection.reply(xcb_input_query_device_state_reply, cookie);
        if (!state)
            continue;
        for (auto part = xcb_input_query_device_state_classes_iterator(state.get()); part.rem;
             xcb_input_input_state_next(&part)) {
            if (part.data->class_id == XCB_INPUT_INPUT_CLASS_KEY)
                down |= keySet(reinterpret_cast<const xcb_input_key_state_t*>(part.data)->keys);
        }
    }
    return down;
}

KeySet heldModifierKeys(const Keymap& keymap)
{
    KeySet keys;
    for (int code = keymap.firstKeyCode(); code <= keymap.lastKeyCode(); ++code)
        keys[static_cast<size_t>(code)] = keymap.key(static_cast<uint8_t>(code)).isHeldModifier();
    return keys;
}

void setLocks(const X11Connection& connection, uint8_t affected, uint8_t locked)
{
    xcb_xkb_latch_lock_state(connection.get(), XCB_XKB_ID_USE_CORE_KBD, affected, locked, 0, 0, x11_mask::all,
                             0, 0);
}

void latch(const X11Connection& connection, uint8_t modifiers)
{
    // The library's own function has forgotten one field.
    struct Request {
        uint8_t majorOpcode;
        uint8_t minorOpcode;
        uint16_t length;
        uint16_t device;
        std::array<uint8_t, 4> locks;
        uint8_t affectedLatches;
        uint8_t latches;
        std::array<uint8_t, 4> group;
    } request{0, XCB_XKB_LATCH_LOCK_STATE, 0, XCB_XKB_ID_USE_CORE_KBD, {}, modifiers, modifiers, {}};
    static_assert(sizeof request == sizeof(xcb_xkb_latch_lock_state_request_t));
    const xcb_protocol_request_t protocol{1, &xcb_xkb_id, XCB_XKB_LATCH_LOCK_STATE, 1};
    // Two entries in front are the library's to use.
    std::array<iovec, 3> parts{};
    parts[2] = {&request, sizeof request};
    xcb_send_request(connection.get(), 0, &parts[2], &protocol);
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

void resetWithConnection(const X11Connection& connection, const std::optional<KeyboardHelps>& helps)
{
    constexpr uint32_t reset = XCB_XKB_PER_CLIENT_FLAG_AUTO_RESET_CONTROLS;
    const auto cookie =
        xcb_xkb_per_client_flags(connection.get(), XCB_XKB_ID_USE_CORE_KBD, reset, helps ? reset : 0,
                                 helps ? filters : 0, helps ? filters : 0, helps ? helps->filters : 0);
    xcb_discard_reply(connection.get(), cookie.sequence);
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
