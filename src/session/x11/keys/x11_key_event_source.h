#pragma once

#include "ports/keyboard.h"
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
/// text. While it lives, held modifiers are let go, CapsLock (and other locks, but for NumLock) is off, and
/// so are the server's helps that would swallow typed keys.
///
/// A text is sent at once, and waits until the server has dealt with the one before (a millisecond for the
/// usual 20 units); modifiers that a person has pressed meanwhile are let go then. Other keys are sent at
/// the end at the latest.
class X11KeyEventSource : public KeyEventSource {
public:
    using Question = std::function<PasteShortcut()>;

    /// `connection` and `watched` must outlive the source. `shortcutOfFrontmost` is asked for each event of a
    /// paste shortcut.
    X11KeyEventSource(const X11Connection& connection, Keymap keymap, const KeyboardState& state,
                      CharacterMap characters, WatchedChord& watched, Question shortcutOfFrontmost);
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
    void letModifiersGo(const KeyboardState& state);
    void play(uint8_t keyCode, KeyDirection direction);
    void type(const std::u16string& text);
    void press(const SyntheticKeyEvent& event);
    void release(const HeldKey& key);
    [[nodiscard]] std::optional<Stroke> strokeFor(const SyntheticKeyEvent& event) const;
    [[nodiscard]] Stroke pasteStroke(uint8_t physicalKey) const;

    const X11Connection& connection_;
    Keymap keymap_;
    CharacterMap characters_;
    WatchedChord& watched_;
    Question shortcutOfFrontmost_;
    bool hasTyped_ = false;
    uint8_t suspendedLocks_ = 0;
    /// As they were, while they are off.
    std::optional<KeyboardHelps> suspendedHelps_;
    std::vector<HeldKey> down_;
};

} // namespace corvandi
