#pragma once

#include "platform/keyboard.h"
#include "platform/linux/x11/character_map.h"
#include "platform/linux/x11/keyboard_helps.h"
#include "platform/linux/x11/keyboard_state.h"
#include "platform/linux/x11/paste_shortcut.h"
#include "platform/linux/x11/watched_chord.h"
#include "platform/linux/x11/x11_connection.h"

#include <functional>
#include <optional>
#include <vector>

namespace corvandi {

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
