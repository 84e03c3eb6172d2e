#include "session/x11/keys/x11_key_event_source.h"

#include "session/x11/keys/key_code_table.h"
#include "session/x11/keys/key_plan.h"
#include "session/x11/keys/watched_chord.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <utility>

namespace corvandi {

void fakeKey(const X11Connection& connection, uint8_t keyCode, KeyDirection direction)
{
    const uint8_t type = direction == KeyDirection::down ? XCB_KEY_PRESS : XCB_KEY_RELEASE;
    xcb_test_fake_input(connection.get(), type, keyCode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

void fakeDeviceKey(const X11Connection& connection, uint16_t device, uint8_t keyCode, KeyDirection direction)
{
    const int offset =
        direction == KeyDirection::down ? XCB_INPUT_DEVICE_KEY_PRESS : XCB_INPUT_DEVICE_KEY_RELEASE;
    xcb_test_fake_input(connection.get(), static_cast<uint8_t>(connection.xinputFirstEvent() + offset),
                        keyCode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, static_cast<uint8_t>(device));
}

X11KeyEventSource::X11KeyEventSource(const X11Connection& connection, Keymap keymap,
                                     const KeyboardState& state, CharacterMap characters,
                                     WatchedChord& watched, Question shortcutOfFrontmost)
    : connection_(connection)
    , keymap_(std::move(keymap))
    , characters_(std::move(characters))
    , watched_(watched)
    , shortcutOfFrontmost_(std::move(shortcutOfFrontmost))
{
    suspendHelps();
    letModifiersGo(state);
}

X11KeyEventSource::~X11KeyEventSource()
{
    while (!down_.empty())
        post({down_.back().virtualKey, KeyDirection::up, 0, {}});
    if (suspendedLocks_)
        setLocks(connection_, suspendedLocks_, suspendedLocks_);
    if (suspendedHelps_)
        setHelps(connection_, *suspendedHelps_);
    connection_.flush();
}

void X11KeyEventSource::suspendHelps()
{
    const auto helps = readHelps(connection_);
    if (!helps || *helps == harmless(*helps))
        return;
    suspendedHelps_ = helps;
    setHelps(connection_, harmless(*helps));
}

void X11KeyEventSource::letModifiersGo(const KeyboardState& state)
{
    constexpr uint8_t opensMenus = x11_mask::alt | x11_mask::super;
    const auto neutral = keymap_.neutralKey();
    if ((state.held & opensMenus) && neutral) {
        play(*neutral, KeyDirection::down);
        play(*neutral, KeyDirection::up);
    }
    if (state.held & ~lockModifiers) {
        // A person who holds the chord goes on holding it.
        if (watched_.heldOn)
            watched_.coveredModifiers = static_cast<uint8_t>(watched_.coveredModifiers | state.held);
        for (const uint8_t key : heldModifierKeys(connection_, keymap_))
            play(key, KeyDirection::up);
    }
    const auto locks = static_cast<uint8_t>(state.locked & ~x11_mask::numLock);
    suspendedLocks_ = static_cast<uint8_t>(suspendedLocks_ | locks);
    if (locks || state.latched)
        setLocks(connection_, suspendedLocks_, x11_mask::none);
}

void X11KeyEventSource::play(uint8_t keyCode, KeyDirection direction)
{
    fakeKey(connection_, keyCode, direction);
    if (direction == KeyDirection::up)
        watched_.noteTypedRelease(keyCode);
}

std::optional<SyntheticKeyEvent> X11KeyEventSource::makeKeyEvent(uint16_t virtualKey, KeyDirection direction)
{
    if (!x11KeyCode(virtualKey))
        return std::nullopt;
    // A V is only ever made for pasting.
    if (virtualKey == virtual_key::v && shortcutOfFrontmost_() == PasteShortcut::none)
        return std::nullopt;
    return SyntheticKeyEvent{virtualKey, direction, 0, {}};
}

void X11KeyEventSource::post(const SyntheticKeyEvent& event)
{
    if (event.direction == KeyDirection::down) {
        if (event.text.empty())
            press(event);
        else
            type(event.text);
        return;
    }
    const auto held = std::find_if(down_.begin(), down_.end(),
                                   [&](const HeldKey& key) { return key.virtualKey == event.virtualKey; });
    if (!event.text.empty() || held == down_.end())
        return;
    const HeldKey key = *held;
    down_.erase(held);
    release(key);
}

void X11KeyEventSource::type(const std::u16string& text)
{
    // The answer comes when the server has dealt with the text before, so that never more than one is on
    // its way: sending would have to wait much longer once the connection is full.
    const auto state = std::exchange(hasTyped_, true) ? readState(connection_) : std::nullopt;
    if (state)
        letModifiersGo(*state);
    for (const KeyAction& action : planText(typedCharacters(text), characters_, keymap_))
        play(action.keyCode, action.direction);
    connection_.flush();
}

void X11KeyEventSource::press(const SyntheticKeyEvent& event)
{
    const auto stroke = strokeFor(event);
    if (!stroke)
        return;
    for (const uint8_t modifier : modifierKeys(stroke->modifiers, keymap_))
        play(modifier, KeyDirection::down);
    play(stroke->keyCode, KeyDirection::down);
    down_.push_back({event.virtualKey, *stroke});
}

void X11KeyEventSource::release(const HeldKey& key)
{
    play(key.stroke.keyCode, KeyDirection::up);
    for (const uint8_t modifier : modifierKeys(key.stroke.modifiers, keymap_))
        play(modifier, KeyDirection::up);
}

std::optional<Stroke> X11KeyEventSource::strokeFor(const SyntheticKeyEvent& event) const
{
    const auto keyCode = x11KeyCode(event.virtualKey);
    if (!keyCode)
        return std::nullopt;
    if (event.virtualKey == virtual_key::v && event.flags == modifier_flags::command)
        return pasteStroke(*keyCode);
    return Stroke{*keyCode, x11Mask(event.flags)};
}

/// Applications look for the letter, not for the place of the key; where the layout has no Latin letters
/// they go by the place.
Stroke X11KeyEventSource::pasteStroke(uint8_t physicalKey) const
{
    const auto letter = characters_.find(U'v');
    const bool isPlain = letter && letter->modifiers == x11_mask::none;
    const bool hasShift = shortcutOfFrontmost_() == PasteShortcut::controlShiftV;
    const uint8_t modifiers = hasShift ? x11_mask::control | x11_mask::shift : x11_mask::control;
    return {isPlain ? letter->keyCode : physicalKey, modifiers};
}

} // namespace corvandi
