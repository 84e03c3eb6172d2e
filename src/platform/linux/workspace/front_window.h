#pragma once

#include "platform/linux/xcb/xcb_connection.h"

#include <QString>

#include <sys/types.h>

#include <optional>

namespace corvandi {

/// What the active window says about itself.
struct FrontWindow {
    /// _GTK_APPLICATION_ID; empty when absent.
    QString gtkApplicationId;
    /// The class (the second half) of WM_CLASS; empty when absent.
    QString windowClass;
    /// The local process that owns it, as the X server knows it or else as the window says; nothing for
    /// a client on another machine.
    std::optional<pid_t> process;
    /// It is the desktop's background with its icons.
    bool isDesktop = false;
};

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
    bool hasXRes_;
    xcb_atom_t netActiveWindow_;
    xcb_atom_t gtkApplicationId_;
    xcb_atom_t netWmPid_;
    xcb_atom_t netWmWindowType_;
    xcb_atom_t netWmWindowTypeDesktop_;
};

} // namespace corvandi
