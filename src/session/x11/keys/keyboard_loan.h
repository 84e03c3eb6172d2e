#pragma once

#include "session/x11/keys/keyboard_state.h"
#include "session/x11/keys/keymap.h"
#include "session/x11/keys/x11_connection.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace corvandi {

/// What typing has changed on the session's keyboard for a while.
struct BorrowedKeyboard {
    /// Locks that are off for the time of a text.
    uint8_t locks = 0;
    /// The options of sticky keys, as they were.
    std::optional<uint16_t> stickyOptions;
    /// Modifier keys have been pressed on the keyboard for synthetic keys.
    bool hasModifiersDown = false;
    /// What has been put onto spare keys.
    std::map<uint8_t, KeySymbols> characters;

    [[nodiscard]] bool isNothing() const { return *this == BorrowedKeyboard{}; }

    friend bool operator==(const BorrowedKeyboard&, const BorrowedKeyboard&) = default;
};

/// The numbers that stand for it in a window's property, and back; nothing for numbers that mean none.
[[nodiscard]] std::vector<uint32_t> wordsFor(const BorrowedKeyboard& borrowed);
[[nodiscard]] std::optional<BorrowedKeyboard> borrowedIn(const std::vector<uint32_t>& words);

/// The note on the session's root window that says what is borrowed and by whom, so that the next start can
/// give back what a killed program could not. There is one note: while its writer lives, others write none.
///
/// Thread: main thread only.
class KeyboardLoan {
public:
    /// `connection` must outlive the loan; the writer counts as alive as long as it is open.
    explicit KeyboardLoan(const X11Connection& connection);

    /// What a program borrowed that has died since; then the note is gone. A few round trips.
    [[nodiscard]] std::optional<BorrowedKeyboard> leftBehind();

    /// Changes what is borrowed, and the note when it changes. Queues the request.
    template<class Change>
    void note(Change change)
    {
        BorrowedKeyboard changed = borrowed_;
        change(changed);
        write(std::move(changed));
    }

private:
    /// The end of a note: the window of who wrote it, and what that window bears, since the server gives a
    /// window's number to another one when it has gone.
    struct Writer {
        xcb_window_t window;
        uint32_t mark;
    };

    [[nodiscard]] std::vector<uint32_t> present() const;
    [[nodiscard]] static Writer takeWriter(std::vector<uint32_t>& words);
    [[nodiscard]] bool isAlive(const Writer& writer) const;
    void write(BorrowedKeyboard borrowed);

    const X11Connection& connection_;
    xcb_atom_t property_;
    Writer writer_;
    BorrowedKeyboard borrowed_;
};

} // namespace corvandi
