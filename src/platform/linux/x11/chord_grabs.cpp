#include "platform/linux/x11/chord_grabs.h"

#include "platform/linux/x11/keyboard_devices.h"
#include "platform/linux/x11/modifier_masks.h"
#include "platform/linux/xcb/xcb_ptr.h"

#include <xcb/xinput.h>

namespace corvandi {
namespace {

constexpr uint32_t grabbedEvents = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;

} // namespace

ChordGrabs::ChordGrabs(const X11Connection& connection, X11Chord chord)
    : connection_(connection)
    , chord_(chord)
    , masks_(masksContaining(chord.modifiers))
{
}

ChordGrabs::~ChordGrabs()
{
    const auto count = static_cast<uint16_t>(masks_.size());
    for (const uint16_t device : devices_) {
        xcb_input_xi_passive_ungrab_device(connection_.get(), connection_.root(), chord_.keyCode, device,
                                           count, XCB_INPUT_GRAB_TYPE_KEYCODE, masks_.data());
    }
    connection_.sync();
}

ChordGrabs::Outcome ChordGrabs::claim()
{
    const auto count = static_cast<uint16_t>(masks_.size());
    std::vector<xcb_input_xi_passive_grab_device_cookie_t> cookies;
    devices_.clear();
    for (const KeyboardDevice& device : slaveKeyboards(connection_)) {
        devices_.push_back(device.id);
        cookies.push_back(xcb_input_xi_passive_grab_device(
            connection_.get(), XCB_CURRENT_TIME, connection_.root(), XCB_CURSOR_NONE, chord_.keyCode,
            device.id, count, 1, XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC,
            XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_OWNER_NO_OWNER, &grabbedEvents, masks_.data()));
    }
    size_t refused = 0;
    for (const auto cookie : cookies) {
        const auto reply = owned(xcb_input_xi_passive_grab_device_reply(connection_.get(), cookie, nullptr));
        refused += reply ? reply->num_modifiers : count;
    }
    if (refused == 0 && !cookies.empty())
        return Outcome::everything;
    return refused < cookies.size() * count ? Outcome::something : Outcome::nothing;
}

} // namespace corvandi
