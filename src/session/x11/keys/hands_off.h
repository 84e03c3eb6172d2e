#pragma once

#include "ports/keyboard.h"
#include "session/x11/keys/keyboard_state.h"
#include "session/x11/keys/x11_connection.h"

#include <xcb/xinput.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace corvandi {

/// A key that a person moved while their keyboard was kept off.
struct CaughtKey {
    uint16_t device;
    uint8_t keyCode;
    KeyDirection direction;
    /// The modifiers that this keyboard held then.
    uint8_t modifiers;
};

/// The keyboards that a person types on: all that feed `master`, or nothing at the moment, but for the one
/// for synthetic keys. One round trip.
[[nodiscard]] std::vector<uint16_t> keyboardsOfHands(const X11Connection& connection, uint16_t master);

/// Keys that are played without anybody's hands in between: everything that is queued on `connection` while
/// this lives, until `end`, is carried out as one piece.
///
/// For that time the server is grabbed, which keeps synthetic keys of other programs off, and so are the
/// keyboards that a person types on: what they do comes to this connection. All requests are sent together,
/// the ones that give everything back among them, and nothing is waited for in between. So a process that is
/// stopped or killed at any moment leaves nothing grabbed, provided that the piece fits into the connection's
/// buffer (16 KB; twenty characters take four).
class HandsOff {
public:
    /// Queues the beginning. The queue must be empty, and no other events be asked for on this connection.
    HandsOff(const X11Connection& connection, std::vector<uint16_t> keyboards);
    /// Gives everything back, if `end` has not.
    ~HandsOff();

    HandsOff(const HandsOff&) = delete;
    HandsOff& operator=(const HandsOff&) = delete;

    struct Report {
        /// As it was at the beginning.
        KeyboardState state;
        KeySet keysDown;
        /// The same on the keyboards that a person types on.
        KeySet handsDown;
        /// In order, without repeats.
        std::vector<CaughtKey> caught;
    };

    /// Sends the piece, and waits until the server has carried it out. Nothing when the server has gone.
    [[nodiscard]] std::optional<Report> end();

private:
    void queueEnd();

    const X11Connection& connection_;
    std::vector<uint16_t> keyboards_;
    std::vector<xcb_input_xi_grab_device_cookie_t> grabs_;
    StateRequest state_;
    xcb_query_keymap_cookie_t keys_;
    KeysRequest hands_;
    bool isOver_ = false;
};

} // namespace corvandi
