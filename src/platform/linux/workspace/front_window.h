#pragma once

#include "platform/linux/workspace/window_reader.h"
#include "platform/linux/xcb/xcb_connection.h"

#include <optional>

namespace corvandi {

/// Reads the active window that the window manager names, in two or three round trips.
///
/// Thread: main thread only.
class FrontWindowReader {
public:
    explicit FrontWindowReader(const XcbConnection& x);

    /// Nothing without an active window, window manager or X server, or when the window closes meanwhile.
    [[nodiscard]] std::optional<FrontWindow> read() const;

private:
    [[nodiscard]] xcb_window_t activeWindow() const;

    const XcbConnection& x_;
    WindowReader windows_;
    xcb_atom_t netActiveWindow_;
};

} // namespace corvandi
