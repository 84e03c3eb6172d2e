#pragma once

#include <memory>
#include <vector>

#include <xcb/xcb.h>

namespace corvandi::testing {

/// An application's window that has the keyboard focus, and the key events that reach it.
class KeyWitness {
public:
    enum class Happening { press, release, focusIn, focusOut };
    struct Event {
        Happening happening;
        uint8_t keyCode;
        uint16_t state;
    };

    /// Returns when the window has the focus.
    KeyWitness();
    ~KeyWitness();

    KeyWitness(const KeyWitness&) = delete;
    KeyWitness& operator=(const KeyWitness&) = delete;

    /// Everything that has reached the window since the last call. What the server sent before this
    /// call is included.
    [[nodiscard]] std::vector<Event> take();
    /// The key codes that were pressed since the last call of `take` or this.
    [[nodiscard]] std::vector<uint8_t> takePresses();
    /// Waits until this key's press arrives (which must be on its way), and drops what came before.
    void awaitPress(uint8_t keyCode);

    void focus();
    [[nodiscard]] xcb_window_t window() const { return window_; }
    [[nodiscard]] xcb_connection_t* connection() const { return connection_; }

private:
    void roundTrip();

    xcb_connection_t* connection_;
    xcb_window_t window_;
};

} // namespace corvandi::testing
