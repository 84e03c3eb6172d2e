#pragma once

#include "session/x11/xcb_connection.h"

#include <QSocketNotifier>

#include <optional>

namespace corvandi::testing {

/// A tray of the older kind, as small as it can be: a window on the screen into which it takes the
/// window of one program, 24 by 24 pixels. It ends with this object.
class TestWindowTray {
public:
    TestWindowTray();
    ~TestWindowTray();
    TestWindowTray(const TestWindowTray&) = delete;
    TestWindowTray& operator=(const TestWindowTray&) = delete;

    /// The icon's window; none yet, or no more.
    [[nodiscard]] xcb_window_t icon() const { return icon_; }

private:
    void announce();
    void readEvents();
    void dock(xcb_window_t window);

    XcbConnection x_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    xcb_atom_t opcode_ = XCB_ATOM_NONE;
    xcb_window_t icon_ = XCB_WINDOW_NONE;
    std::optional<QSocketNotifier> events_;
};

} // namespace corvandi::testing
