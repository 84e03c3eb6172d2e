#pragma once

#include "ports/keyboard.h"
#include "session/x11/keys/hands_off.h"
#include "session/x11/keys/keyboard_loan.h"
#include "session/x11/keys/keyboard_state.h"
#include "session/x11/keys/spare_keys.h"
#include "session/x11/keys/watched_chord.h"
#include "session/x11/keys/x11_connection.h"
#include "session/x11/keys/x11_keyboard.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace corvandi {

/// Queues a key event of the server's keyboard for synthetic keys. It is sent with the next flush.
void fakeKey(const X11Connection& connection, uint8_t keyCode, KeyDirection direction);
/// The same through one slave keyboard, as if its own key had moved.
void fakeDeviceKey(const X11Connection& connection, uint16_t device, uint8_t keyCode, KeyDirection direction);

/// Plays keys on the server's keyboard for synthetic keys, on a keymap that bears every character of the
/// text. Whatever hands do meanwhile does not get in between: see `HandsOff`. While it lives, CapsLock (and
/// other locks, but for NumLock) is off, and so are the server's helps that would swallow typed keys.
///
/// A text is sent at once, and waited for until the server has dealt with it (a millisecond for the usual 20
/// units). Modifiers that a person holds are up for that time, and down again afterwards; what a person has
/// struck meanwhile follows the text. Other keys are sent when the last of them is let go of.
class X11KeyEventSource : public KeyEventSource {
public:
    using Question = std::function<PasteShortcut()>;

    /// `connection` and `watched` must outlive the source. `shortcutOfFrontmost` is asked for each event of a
    /// paste shortcut. `ended` is called at the end with the modifier keys that have been pressed for a
    /// person who held them, if there were any: they are to be let go of as soon as no modifier is held.
    X11KeyEventSource(const X11Connection& connection, Keymap keymap, uint16_t master,
                      CharacterMap characters, WatchedChord& watched, KeyboardLoan& loan,
                      Question shortcutOfFrontmost, std::function<void(const KeySet&)> ended);
    ~X11KeyEventSource() override;

    X11KeyEventSource(const X11KeyEventSource&) = delete;
    X11KeyEventSource& operator=(const X11KeyEventSource&) = delete;

    [[nodiscard]] std::optional<SyntheticKeyEvent> makeKeyEvent(uint16_t virtualKey,
                                                                KeyDirection direction) override;
    void post(const SyntheticKeyEvent& event) override;

private:
    struct HeldKey {
        uint16_t virtualKey;
        Stroke stroke;
    };

    void suspendHelps();
    void noteLoan();
    void begin();
    void end();
    void settle(const HandsOff::Report& report);
    void agreeWithHands(const KeySet& pressed, const KeySet& released);
    void letGo(const KeySet& keys);
    void handOver(const CaughtKey& key, uint8_t heldBefore);
    void playNeutralKey();
    void press(const KeySet& keys);
    void release(const KeySet& keys);
    void play(uint8_t keyCode, KeyDirection direction);
    void type(const std::u16string& text);
    void press(const SyntheticKeyEvent& event);
    void release(const HeldKey& key);
    [[nodiscard]] std::optional<Stroke> strokeFor(const SyntheticKeyEvent& event) const;
    [[nodiscard]] Stroke pasteStroke(uint8_t physicalKey) const;

    const X11Connection& connection_;
    Keymap keymap_;
    std::vector<uint16_t> keyboards_;
    CharacterMap characters_;
    WatchedChord& watched_;
    KeyboardLoan& loan_;
    Question shortcutOfFrontmost_;
    std::function<void(const KeySet&)> ended_;
    KeySet modifierKeys_;
    /// Modifier keys that have been pressed for a person who held them.
    KeySet leftDown_;
    /// Present while keys are queued.
    std::optional<HandsOff> batch_;
    /// The modifier keys that a person holds, as far as is known.
    KeySet held_;
    uint8_t suspendedLocks_ = 0;
    /// As they were, while they are off.
    std::optional<KeyboardHelps> suspendedHelps_;
    std::vector<HeldKey> down_;
};

} // namespace corvandi
