#include "session/x11/keys/watched_chord.h"

#include "ports/key_codes.h"
#include "session/x11/xcb_connection.h"

#include <xcb/xinput.h>

#include <array>
#include <string_view>

namespace corvandi {
namespace {

struct Modifier {
    uint64_t flag;
    uint8_t mask;
};

constexpr std::array modifiers{
    Modifier{modifier_flags::command, x11_mask::super},
    Modifier{modifier_flags::option, x11_mask::alt},
    Modifier{modifier_flags::control, x11_mask::control},
    Modifier{modifier_flags::shift, x11_mask::shift},
};

} // namespace

uint8_t x11Mask(uint64_t flags)
{
    unsigned mask = 0;
    for (const Modifier& modifier : modifiers) {
        if (flags & modifier.flag)
            mask |= modifier.mask;
    }
    return static_cast<uint8_t>(mask);
}

uint64_t modifierFlags(uint8_t mask)
{
    uint64_t flags = 0;
    for (const Modifier& modifier : modifiers) {
        if (mask & modifier.mask)
            flags |= modifier.flag;
    }
    return flags;
}

uint8_t modifierOf(uint16_t virtualKey)
{
    switch (virtualKey) {
    case 54:
    case 55:
        return x11_mask::super;
    case 56:
    case 60:
        return x11_mask::shift;
    case 58:
    case 61:
        return x11_mask::alt;
    case 59:
    case 62:
        return x11_mask::control;
    default:
        return x11_mask::none;
    }
}

std::vector<uint32_t> masksContaining(uint8_t required)
{
    std::vector<uint32_t> masks;
    for (uint32_t mask = 0; mask <= x11_mask::all; ++mask) {
        if ((mask & required) == required)
            masks.push_back(mask);
    }
    return masks;
}

std::vector<uint32_t> masksLacking(uint8_t required)
{
    constexpr uint32_t considered =
        x11_mask::shift | x11_mask::control | x11_mask::alt | x11_mask::super | x11_mask::numLock;
    std::vector<uint32_t> masks;
    for (uint32_t mask = 0; mask <= considered; ++mask) {
        if ((mask & ~considered) == 0 && (mask & required) != required)
            masks.push_back(mask);
    }
    return masks;
}

namespace {

bool isXtest(const xcb_input_xi_device_info_t& info)
{
    const std::string_view name(xcb_input_xi_device_info_name(&info),
                                static_cast<size_t>(xcb_input_xi_device_info_name_length(&info)));
    return name.find("XTEST") != std::string_view::npos;
}

bool hasKeys(const xcb_input_xi_device_info_t& info)
{
    for (auto part = xcb_input_xi_device_info_classes_iterator(&info); part.rem;
         xcb_input_device_class_next(&part)) {
        if (part.data->type == XCB_INPUT_DEVICE_CLASS_TYPE_KEY)
            return true;
    }
    return false;
}

} // namespace

std::vector<KeyboardDevice> slaveKeyboards(const X11Connection& connection, Floating floating)
{
    std::vector<KeyboardDevice> devices;
    const auto cookie = xcb_input_xi_query_device(connection.get(), XCB_INPUT_DEVICE_ALL);
    const auto reply = owned(xcb_input_xi_query_device_reply(connection.get(), cookie, nullptr));
    if (!reply)
        return devices;
    for (auto info = xcb_input_xi_query_device_infos_iterator(reply.get()); info.rem;
         xcb_input_xi_device_info_next(&info)) {
        if (info.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD)
            devices.push_back({info.data->deviceid, info.data->attachment, isXtest(*info.data)});
        else if (floating == Floating::too && info.data->type == XCB_INPUT_DEVICE_TYPE_FLOATING_SLAVE &&
                 hasKeys(*info.data))
            devices.push_back({info.data->deviceid, 0, isXtest(*info.data), true});
    }
    return devices;
}

namespace {

constexpr uint32_t grabbedEvents = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;

} // namespace

ChordGrabs::ChordGrabs(const X11Connection& connection, X11Chord chord)
    : connection_(connection)
    , chord_(chord)
    , masks_(masksContaining(chord.modifiers))
    , lesserMasks_(masksLacking(chord.modifiers))
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
    handsDevices_.clear();
    for (const KeyboardDevice& device : slaveKeyboards(connection_)) {
        devices_.push_back(device.id);
        if (!device.isXtest)
            handsDevices_.push_back(device.id);
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

void ChordGrabs::claimWithoutModifiers(bool isWanted)
{
    const auto count = static_cast<uint16_t>(lesserMasks_.size());
    for (const uint16_t device : handsDevices_) {
        if (!isWanted) {
            xcb_input_xi_passive_ungrab_device(connection_.get(), connection_.root(), chord_.keyCode, device,
                                               count, XCB_INPUT_GRAB_TYPE_KEYCODE, lesserMasks_.data());
            continue;
        }
        const auto cookie = xcb_input_xi_passive_grab_device(
            connection_.get(), XCB_CURRENT_TIME, connection_.root(), XCB_CURSOR_NONE, chord_.keyCode, device,
            count, 1, XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC,
            XCB_INPUT_GRAB_OWNER_NO_OWNER, &grabbedEvents, lesserMasks_.data());
        // What other programs hold of it stays theirs.
        xcb_discard_reply(connection_.get(), cookie.sequence);
    }
    connection_.sync();
}

} // namespace corvandi
