#include "session/x11/keys/hands_off.h"

#include "session/x11/keys/watched_chord.h"
#include "session/x11/xcb_connection.h"

#include <algorithm>

namespace corvandi {
namespace {

constexpr uint32_t grabbedEvents = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;

} // namespace

std::vector<uint16_t> keyboardsOfHands(const X11Connection& connection, uint16_t master)
{
    std::vector<uint16_t> keyboards;
    for (const KeyboardDevice& device : slaveKeyboards(connection, Floating::too)) {
        if (!device.isXtest && (device.isFloating || device.master == master))
            keyboards.push_back(device.id);
    }
    return keyboards;
}

HandsOff::HandsOff(const X11Connection& connection, std::vector<uint16_t> keyboards)
    : connection_(connection)
    , keyboards_(std::move(keyboards))
    , state_()
    , keys_()
{
    xcb_grab_server(connection_.get());
    for (const uint16_t keyboard : keyboards_) {
        grabs_.push_back(xcb_input_xi_grab_device(connection_.get(), connection_.root(), XCB_CURRENT_TIME,
                                                  XCB_CURSOR_NONE, keyboard, XCB_INPUT_GRAB_MODE_22_ASYNC,
                                                  XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_OWNER_NO_OWNER,
                                                  1, &grabbedEvents));
    }
    state_ = requestState(connection_);
    keys_ = xcb_query_keymap(connection_.get());
    hands_ = requestKeysDownOn(connection_, keyboards_);
}

HandsOff::~HandsOff()
{
    if (!isOver_)
        (void)end();
}

void HandsOff::queueEnd()
{
    for (const uint16_t keyboard : keyboards_)
        xcb_input_xi_ungrab_device(connection_.get(), XCB_CURRENT_TIME, keyboard);
    xcb_ungrab_server(connection_.get());
    isOver_ = true;
}

std::optional<HandsOff::Report> HandsOff::end()
{
    queueEnd();
    connection_.sync();
    // A keyboard that another grab holds, such as that of the hotkey, is off already.
    for (const auto& grab : grabs_)
        (void)connection_.reply(xcb_input_xi_grab_device_reply, grab);
    const auto state = stateOf(connection_, state_);
    const KeySet keys = keysDown(connection_, keys_);
    const KeySet hands = keysDownOn(connection_, hands_);
    if (!state)
        return std::nullopt;
    Report report{*state, keys, hands, {}};
    while (const auto event = connection_.pollEvent()) {
        if (eventType(*event) != XCB_GE_GENERIC)
            continue;
        const auto& key = reinterpret_cast<const xcb_input_key_press_event_t&>(*event);
        const bool isKey = key.extension == connection_.xinputOpcode() &&
                           (key.event_type == XCB_INPUT_KEY_PRESS || key.event_type == XCB_INPUT_KEY_RELEASE);
        if (!isKey || (key.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT))
            continue;
        report.caught.push_back(
            {key.deviceid, static_cast<uint8_t>(key.detail),
             key.event_type == XCB_INPUT_KEY_PRESS ? KeyDirection::down : KeyDirection::up,
             static_cast<uint8_t>(key.mods.effective)});
    }
    return report;
}

} // namespace corvandi
