#include "session/x11/keys/x11_key_event_source.h"

#include "session/x11/keys/key_code_table.h"
#include "session/x11/keys/key_plan.h"
#include "session/x11/keys/watched_chord.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <utility>

namespace corvandi {
namespace {

/// So many fit into one piece that is sent at once.
constexpr size_t charactersAtOnce = 20;
constexpr auto suspendableLocks = static_cast<uint8_t>(x11_mask::all & ~x11_mask::numLock);

} // namespace

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

X11KeyEventSource::X11KeyEventSource(const X11Connection& connection, Keymap keymap, uint16_t master,
                                     CharacterMap characters, WatchedChord& watched, KeyboardLoan& loan,
                                     Question shortcutOfFrontmost, std::function<void(const KeySet&)> ended)
    : connection_(connection)
    , keymap_(std::move(keymap))
    , keyboards_(keyboardsOfHands(connection, master))
    , characters_(std::move(characters))
    , watched_(watched)
    , loan_(loan)
    , shortcutOfFrontmost_(std::move(shortcutOfFrontmost))
    , ended_(std::move(ended))
    , modifierKeys_(heldModifierKeys(keymap_))
{
    watched_.isTyped = true;
    held_ = keysDown(connection_) & modifierKeys_;
    if (watched_.tap) {
        // First: a claim on a keyboard that the tap still holds would go by that keyboard's modifiers alone.
        watched_.tap->catchUp();
        watched_.tap->claimWithoutModifiers(true);
    }
    suspendHelps();
}

X11KeyEventSource::~X11KeyEventSource()
{
    while (!down_.empty())
        post({down_.back().virtualKey, KeyDirection::up, 0, {}});
    if (suspendedLocks_)
        setLocks(connection_, suspendedLocks_, suspendedLocks_);
    if (suspendedHelps_) {
        setHelps(connection_, *suspendedHelps_);
        resetWithConnection(connection_, std::nullopt);
    }
    connection_.sync();
    suspendedLocks_ = 0;
    suspendedHelps_.reset();
    noteLoan();
    if (watched_.tap) {
        watched_.tap->claimWithoutModifiers(false);
        watched_.tap->catchUp();
    }
    watched_.isTyped = false;
    if (leftDown_.any())
        ended_(leftDown_);
}

void X11KeyEventSource::suspendHelps()
{
    const auto helps = readHelps(connection_);
    if (!helps || *helps == harmless(*helps))
        return;
    suspendedHelps_ = helps;
    noteLoan();
    resetWithConnection(connection_, *helps);
    setHelps(connection_, harmless(*helps));
}

void X11KeyEventSource::noteLoan()
{
    loan_.note([this](BorrowedKeyboard& borrowed) {
        borrowed.locks = suspendedLocks_;
        borrowed.stickyOptions =
            suspendedHelps_ ? std::optional(suspendedHelps_->stickyOptions) : std::nullopt;
        borrowed.hasModifiersDown = borrowed.hasModifiersDown || leftDown_.any();
    });
}

void X11KeyEventSource::begin()
{
    if (batch_)
        return;
    batch_.emplace(connection_, keyboards_);
    // In any case: a hand may have moved since the last look at the keys.
    letGo(modifierKeys_);
    setLocks(connection_, suspendableLocks, x11_mask::none);
}

void X11KeyEventSource::end()
{
    press(held_);
    const auto report = batch_->end();
    batch_.reset();
    if (report)
        settle(*report);
}

void X11KeyEventSource::settle(const HandsOff::Report& report)
{
    // Off since the last time: one that is on has been struck meanwhile, and means the contrary then.
    suspendedLocks_ = static_cast<uint8_t>(suspendedLocks_ ^ (report.state.locked & suspendableLocks));
    noteLoan();
    // A person who holds the chord goes on holding it.
    if (watched_.heldOn)
        watched_.coveredModifiers = static_cast<uint8_t>(watched_.coveredModifiers | report.state.held);
    const KeySet held = report.keysDown & modifierKeys_;
    const KeySet released = held_ & ~held;
    letGo(released);
    press(held & ~held_);
    held_ = held;
    if (report.state.latched)
        latch(connection_, report.state.latched);
    for (const CaughtKey& key : report.caught)
        handOver(key, report.state.held);
    agreeWithHands(held & report.handsDown, released);
    connection_.flush();
}

/// The person may have let go before a key was pressed again for them, or have pressed it again before it was
/// let go of.
void X11KeyEventSource::agreeWithHands(const KeySet& pressed, const KeySet& released)
{
    if ((pressed | released).none())
        return;
    const KeySet down = keysDownOn(connection_, requestKeysDownOn(connection_, keyboards_));
    letGo(pressed & ~down);
    press(released & down);
    held_ = (held_ & ~(pressed & ~down)) | (released & down);
    leftDown_ |= pressed | (released & down);
    noteLoan();
}

void X11KeyEventSource::handOver(const CaughtKey& key, uint8_t heldBefore)
{
    if (key.direction == KeyDirection::up) {
        held_.reset(key.keyCode);
        return play(key.keyCode, KeyDirection::up);
    }
    if (modifierKeys_[key.keyCode]) {
        press(KeySet().set(key.keyCode));
        held_.set(key.keyCode);
        return agreeWithHands(KeySet().set(key.keyCode), {});
    }
    const auto held = static_cast<uint8_t>(key.modifiers | heldBefore);
    const auto& chord = watched_.chord;
    const bool isChord = watched_.tap && chord && chord->keyCode == key.keyCode &&
                         (held & chord->modifiers) == chord->modifiers;
    if (isChord) {
        connection_.sync();
        return watched_.tap->pressedUnseen(key.device);
    }
    play(key.keyCode, KeyDirection::down);
    play(key.keyCode, KeyDirection::up);
}

/// Lest the application take it for a lone tap, which opens its menu.
void X11KeyEventSource::letGo(const KeySet& keys)
{
    if (keys.any())
        playNeutralKey();
    release(keys);
}

void X11KeyEventSource::playNeutralKey()
{
    if (const auto key = keymap_.neutralKey()) {
        play(*key, KeyDirection::down);
        play(*key, KeyDirection::up);
    }
}

void X11KeyEventSource::press(const KeySet& keys)
{
    for (size_t key = 0; key < keys.size(); ++key) {
        if (keys[key])
            play(static_cast<uint8_t>(key), KeyDirection::down);
    }
    // Lest letting go of it look like a lone tap.
    if (keys.any())
        playNeutralKey();
}

void X11KeyEventSource::release(const KeySet& keys)
{
    for (size_t key = 0; key < keys.size(); ++key) {
        if (keys[key])
            play(static_cast<uint8_t>(key), KeyDirection::up);
    }
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
    const std::u32string characters = typedCharacters(text);
    for (size_t start = 0; start < characters.size(); start += charactersAtOnce) {
        const auto plan = planText(characters.substr(start, charactersAtOnce), characters_, keymap_);
        begin();
        // A key that a person holds down can't be struck.
        KeySet struck;
        for (const KeyAction& action : plan)
            struck.set(action.keyCode);
        release(struck & ~modifierKeys_);
        for (const KeyAction& action : plan)
            play(action.keyCode, action.direction);
        end();
    }
}

void X11KeyEventSource::press(const SyntheticKeyEvent& event)
{
    const auto stroke = strokeFor(event);
    if (!stroke)
        return;
    begin();
    for (const uint8_t modifier : modifierKeys(stroke->modifiers, keymap_))
        play(modifier, KeyDirection::down);
    play(stroke->keyCode, KeyDirection::up);
    play(stroke->keyCode, KeyDirection::down);
    down_.push_back({event.virtualKey, *stroke});
}

void X11KeyEventSource::release(const HeldKey& key)
{
    play(key.stroke.keyCode, KeyDirection::up);
    for (const uint8_t modifier : modifierKeys(key.stroke.modifiers, keymap_))
        play(modifier, KeyDirection::up);
    if (down_.empty())
        end();
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
