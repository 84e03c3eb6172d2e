#pragma once

#include "session/x11/xcb_connection.h"

#include <memory>

namespace corvandi::testing {

/// A stand-in for programs that show a window and hold what a person writes and points with. On a connection
/// of its own; destroying it ends it.
class ScreenLocker {
public:
    enum class Window { managed, unmanaged, withoutPicture };
    struct Place {
        int16_t x;
        int16_t y;
        uint16_t width;
        uint16_t height;
    };

    /// As most lockers: a window of its own over everything, keyboard and pointer held.
    [[nodiscard]] static ScreenLocker coveringTheScreen();

    /// Shows a window, and holds nothing.
    ScreenLocker(Window window, Place place);

    [[nodiscard]] static Place wholeScreen();
    /// Throws when somebody else holds them.
    void holdKeyboard();
    void holdPointer();
    /// Lets clicks through to the windows below.
    void letInputThrough();
    [[nodiscard]] const XcbConnection& connection() const { return *x_; }
    [[nodiscard]] xcb_window_t window() const { return window_; }

private:
    std::unique_ptr<XcbConnection> x_ = std::make_unique<XcbConnection>();
    xcb_window_t window_;
};

} // namespace corvandi::testing
