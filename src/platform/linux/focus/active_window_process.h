#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <optional>

#include <sys/types.h>

namespace corvandi {

/// Tells which process owns the window that the window manager calls active, over a connection of its
/// own to the X server.
///
/// Two round trips to the server, a third for windows that don't name their process themselves: then the
/// server says who is connected. Without a server every answer is nothing.
///
/// Thread: any, one at a time.
class ActiveWindowProcess {
public:
    explicit ActiveWindowProcess(SystemLog& log);

    /// Nothing if no window is active, it has just been closed, or its process runs on another machine.
    [[nodiscard]] std::optional<pid_t> operator()() const;

private:
    struct Atoms {
        xcb_atom_t activeWindow = XCB_ATOM_NONE;
        xcb_atom_t windowProcess = XCB_ATOM_NONE;
    };

    [[nodiscard]] Atoms internAtoms() const;
    [[nodiscard]] std::optional<uint32_t> number(xcb_window_t window, xcb_atom_t property,
                                                 xcb_atom_t type) const;
    [[nodiscard]] std::optional<pid_t> processOfClient(xcb_window_t window) const;

    std::optional<X11Connection> connection_;
    Atoms atoms_;
};

} // namespace corvandi
