#include "session/x11/keys/key_witness.h"

#include "session/x11/xcb_connection.h"

#include <optional>
#include <stdexcept>

namespace corvandi::testing {
namespace {

std::optional<KeyWitness::Event> translate(const xcb_generic_event_t& event)
{
    using Happening = KeyWitness::Happening;
    const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
    switch (event.response_type & 0x7F) {
    case XCB_KEY_PRESS:
        return KeyWitness::Event{Happening::press, key.detail, key.state};
    case XCB_KEY_RELEASE:
        return KeyWitness::Event{Happening::release, key.detail, key.state};
    case XCB_FOCUS_IN:
        return KeyWitness::Event{Happening::focusIn, 0, 0};
    case XCB_FOCUS_OUT:
        return KeyWitness::Event{Happening::focusOut, 0, 0};
    default:
        return std::nullopt;
    }
}

} // namespace

KeyWitness::KeyWitness()
    : connection_(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(connection_))
        throw std::runtime_error("no X server");
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    window_ = xcb_generate_id(connection_);
    const uint32_t values[] = {1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
                                      XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen->root, 10, 10, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    xcb_map_window(connection_, window_);
    focus();
}

KeyWitness::~KeyWitness()
{
    xcb_disconnect(connection_);
}

void KeyWitness::focus()
{
    xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT, window_, XCB_CURRENT_TIME);
    const auto focus =
        corvandi::owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    if (!focus || focus->focus != window_)
        throw std::runtime_error("the window does not get the focus");
    (void)take();
}

std::vector<KeyWitness::Event> KeyWitness::take()
{
    roundTrip();
    std::vector<Event> events;
    while (const auto event = corvandi::owned(xcb_poll_for_event(connection_))) {
        if (const auto translated = translate(*event))
            events.push_back(*translated);
    }
    return events;
}

std::vector<uint8_t> KeyWitness::takePresses()
{
    std::vector<uint8_t> presses;
    for (const Event& event : take()) {
        if (event.happening == Happening::press)
            presses.push_back(event.keyCode);
    }
    return presses;
}

void KeyWitness::awaitPress(uint8_t keyCode)
{
    while (const auto event = corvandi::owned(xcb_wait_for_event(connection_))) {
        const auto translated = translate(*event);
        if (translated && translated->happening == Happening::press && translated->keyCode == keyCode)
            return;
    }
}

void KeyWitness::roundTrip()
{
    (void)corvandi::owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

} // namespace corvandi::testing
