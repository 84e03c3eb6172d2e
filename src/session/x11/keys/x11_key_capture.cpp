#include "session/x11/keys/x11_key_capture.h"

#include "session/x11/keys/key_code_table.h"
#include "session/x11/keys/keymap_reader.h"
#include "session/x11/keys/watched_chord.h"
#include "session/x11/keys/x11_key_event_source.h"
#include "session/x11/xcb_connection.h"

#include <algorithm>
#include <array>

namespace corvandi {
namespace {

constexpr uint16_t capsLock = 57;
constexpr uint32_t grabbedEvents = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;

} // namespace

std::optional<uint16_t> capturableKey(uint32_t x11KeyCode)
{
    return isModifierKey(x11KeyCode) ? std::nullopt : virtualKeyCode(x11KeyCode);
}

bool isModifierKey(uint32_t x11KeyCode)
{
    if (const auto key = virtualKeyCode(x11KeyCode))
        return modifierOf(*key) != x11_mask::none || *key == capsLock;
    // What keyboard descriptions add to those that keyboards have: levels three and five, Alt, Meta, Super,
    // Hyper.
    constexpr std::array<uint32_t, 6> added{92, 203, 204, 205, 206, 207};
    return std::find(added.begin(), added.end(), x11KeyCode) != added.end();
}

HeldKeyboard::HeldKeyboard(X11Connection connection, SystemLog& log, Callback captured)
    : connection_(std::move(connection))
    , log_(log)
    , captured_(std::move(captured))
    , pump_(
          connection_, [this](const xcb_generic_event_t& event) { handle(event); },
          [this] { log_.write(QStringLiteral("the connection that holds the keyboard is lost")); })
{
    selectKeyboardChanges();
    readKeysDown();
}

HeldKeyboard::~HeldKeyboard()
{
    for (const uint16_t device : devices_)
        xcb_input_xi_ungrab_device(connection_.get(), XCB_CURRENT_TIME, device);
    for (size_t key = 0; key < released_.size(); ++key) {
        if (released_[key])
            fakeKey(connection_, static_cast<uint8_t>(key), KeyDirection::up);
    }
    // Whoever grabs next, such as the hotkey's tap, must find the keyboards free.
    connection_.sync();
}

void HeldKeyboard::selectKeyboardChanges() const
{
    const struct {
        xcb_input_event_mask_t head;
        uint32_t mask;
    } wanted{{XCB_INPUT_DEVICE_ALL, 1}, XCB_INPUT_XI_EVENT_MASK_HIERARCHY};
    xcb_input_xi_select_events(connection_.get(), connection_.root(), 1, &wanted.head);
}

void HeldKeyboard::readKeysDown()
{
    const auto keys =
        owned(xcb_query_keymap_reply(connection_.get(), xcb_query_keymap(connection_.get()), nullptr));
    for (size_t key = 0; keys && key < down_.size(); ++key)
        down_[key] = (keys->keys[key / 8] >> (key % 8)) & 1;
}

bool HeldKeyboard::hold()
{
    struct Asked {
        uint16_t device;
        xcb_input_xi_grab_device_cookie_t cookie;
    };
    std::vector<Asked> asked;
    for (const KeyboardDevice& keyboard : slaveKeyboards(connection_)) {
        if (std::find(devices_.begin(), devices_.end(), keyboard.id) != devices_.end())
            continue;
        asked.push_back(
            {keyboard.id, xcb_input_xi_grab_device(connection_.get(), connection_.root(), XCB_CURRENT_TIME,
                                                   XCB_CURSOR_NONE, keyboard.id, XCB_INPUT_GRAB_MODE_22_ASYNC,
                                                   XCB_INPUT_GRAB_MODE_22_ASYNC,
                                                   XCB_INPUT_GRAB_OWNER_NO_OWNER, 1, &grabbedEvents)});
    }
    for (const Asked& request : asked) {
        const auto reply = owned(xcb_input_xi_grab_device_reply(connection_.get(), request.cookie, nullptr));
        if (reply && reply->status == XCB_GRAB_STATUS_SUCCESS)
            devices_.push_back(request.device);
    }
    pump_.drainSoon();
    return !devices_.empty();
}

void HeldKeyboard::handle(const xcb_generic_event_t& event)
{
    if ((event.response_type & 0x7F) != XCB_GE_GENERIC)
        return;
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if (generic.extension != connection_.xinputOpcode())
        return;
    switch (generic.event_type) {
    case XCB_INPUT_KEY_PRESS:
        // This object may be gone afterwards.
        return keyPressed(reinterpret_cast<const xcb_input_key_press_event_t&>(event));
    case XCB_INPUT_KEY_RELEASE:
        return keyReleased(reinterpret_cast<const xcb_input_key_release_event_t&>(event).detail);
    case XCB_INPUT_HIERARCHY:
        (void)hold();
        return;
    default:
        return;
    }
}

void HeldKeyboard::keyPressed(const xcb_input_key_press_event_t& event)
{
    if (event.detail < released_.size())
        released_[event.detail] = false;
    // The one that is played here comes here.
    if (event.detail == neutralKey_ || isModifierKey(event.detail) ||
        (event.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT))
        return;
    const uint64_t flags = modifierFlags(static_cast<uint8_t>(event.mods.effective | modifiers()));
    stopRepeating(event.deviceid);
    // Called on a copy: the callback may destroy this object.
    const Callback captured = captured_;
    captured({capturableKey(event.detail), flags, event.detail});
}

void HeldKeyboard::keyReleased(uint32_t keyCode)
{
    if (keyCode < down_.size() && down_[keyCode])
        released_[keyCode] = true;
}

void HeldKeyboard::stopRepeating(uint16_t device)
{
    // A keyboard repeats the key that was struck last: let that be one without any meaning.
    const auto keymap = readKeymap(connection_, device);
    pump_.drainSoon();
    if (const auto key = keymap ? keymap->neutralKey() : std::nullopt) {
        neutralKey_ = key;
        fakeDeviceKey(connection_, device, *key, KeyDirection::down);
        fakeDeviceKey(connection_, device, *key, KeyDirection::up);
    }
}

/// Each keyboard has its own account of its modifiers; a person may hold Control on one and strike a key on
/// another.
uint8_t HeldKeyboard::modifiers() const
{
    std::vector<xcb_xkb_get_state_cookie_t> asked;
    for (const uint16_t device : devices_)
        asked.push_back(xcb_xkb_get_state(connection_.get(), device));
    unsigned held = x11_mask::none;
    for (const auto cookie : asked) {
        if (const auto state = owned(xcb_xkb_get_state_reply(connection_.get(), cookie, nullptr)))
            held |= state->mods;
    }
    return static_cast<uint8_t>(held);
}

std::unique_ptr<Registration> X11KeyCapture::begin(std::function<void(const CapturedKey&)> captured)
{
    auto connection = X11Connection::open(log_);
    if (!connection)
        return nullptr;
    auto held = std::make_unique<HeldKeyboard>(std::move(*connection), log_, std::move(captured));
    if (!held->hold()) {
        log_.write(QStringLiteral("another program holds the keyboard"));
        return nullptr;
    }
    return held;
}

std::optional<uint16_t> X11KeyCapture::keyCode(uint32_t nativeCode) const
{
    return capturableKey(nativeCode);
}

} // namespace corvandi
