#pragma once

#include "ports/keyboard.h"
#include "ports/system_log.h"
#include "session/x11/keys/watched_chord.h"

#include <functional>
#include <memory>

namespace corvandi {

/// What an application takes for "paste".
enum class PasteShortcut {
    controlV,
    /// Terminals, where Control+V goes to the program that runs in them.
    controlShiftV,
    /// Terminals that know none, or only one that does not paste the clipboard.
    none,
};

/// The keyboard of an X session, played through XTEST: about 10,000 characters a second.
///
/// Characters that the layout lacks are put onto its empty keys, all those of a text in one change of
/// the layout before its first key, since every change costs every program time. They stay there, and
/// are reused, until this object goes: programs look up the layout late, and would read other characters
/// if they were taken away early. An American layout has room for 72. When it is used up, a text with
/// new characters is refused; they make room for others only after a minute without typing.
///
/// Characters that no keyboard types are left out (`typedCharacters` says which), the rest arrives.
/// The paste shortcut (Command with V) is what the frontmost application takes for it; where it knows none,
/// the event for its key can't be made.
///
/// What a person's hands do meanwhile does not get into a piece of text: see `HandsOff`. What is borrowed for
/// typing is noted on the root window, so that the next start gives it back if this program is killed: see
/// `KeyboardLoan`.
///
/// It never waits for the receiving application, only for answers of the server (milliseconds). Without a
/// server, or when it goes away, no source is made.
class X11Keyboard : public Keyboard {
public:
    /// `log` and `watched` must outlive the keyboard. `shortcutOfFrontmost` is asked when the paste shortcut
    /// is made and posted.
    X11Keyboard(SystemLog& log, WatchedChord& watched, std::function<PasteShortcut()> shortcutOfFrontmost);
    ~X11Keyboard() override;

    /// Sources must not outlive the keyboard, and at most one lives at a time.
    [[nodiscard]] std::unique_ptr<KeyEventSource> createSource(const QString& text) override;

    /// Shift, Control, Alt, Super and AltGr count, CapsLock and NumLock don't. Without a server the keys
    /// are free.
    [[nodiscard]] bool isAnyHeld(uint64_t flags) override;
    [[nodiscard]] std::unique_ptr<Registration> whenKeysAreFree(std::function<void()> callback) override;

private:
    class Session;

    std::function<PasteShortcut()> shortcutOfFrontmost_;
    /// Nothing without a server.
    std::unique_ptr<Session> session_;
};

} // namespace corvandi
