#pragma once

#include "session/x11/xcb_connection.h"
#include "system/applications/application_identity.h"

#include <QString>

#include <sys/types.h>
#include <xcb/res.h>

#include <optional>

namespace corvandi {

/// Questions about a window that are on their way. Those about several windows cost hardly more time than
/// those about one. Each must be answered exactly once.
struct WindowQuestions {
    PropertyRequest gtkId;
    PropertyRequest windowClass;
    PropertyRequest types;
    PropertyRequest states;
    PropertyRequest pid;
    PropertyRequest machine;
    std::optional<xcb_res_query_client_ids_cookie_t> process;
    xcb_get_geometry_cookie_t existence;
};

/// Asks windows about themselves.
///
/// Thread: main thread only.
class WindowReader {
public:
    explicit WindowReader(const XcbConnection& x);

    [[nodiscard]] WindowQuestions ask(xcb_window_t window) const;
    /// Waits for the answers; nothing when the window has closed meanwhile.
    [[nodiscard]] std::optional<FrontWindow> answer(const WindowQuestions& questions) const;

private:
    [[nodiscard]] bool isRegular(const std::vector<uint32_t>& types,
                                 const std::vector<uint32_t>& states) const;

    const XcbConnection& x_;
    bool hasXRes_;
    xcb_atom_t gtkApplicationId_;
    xcb_atom_t netWmPid_;
    xcb_atom_t netWmWindowType_;
    xcb_atom_t netWmWindowTypeDesktop_;
    std::vector<xcb_atom_t> typesOfParts_;
    xcb_atom_t netWmState_;
    xcb_atom_t netWmStateSkipTaskbar_;
};

/// Reads the active window that the window manager names, in two or three round trips. Without a window
/// manager (of the kind that names one) it is the window that keys go to, found in one round trip for each
/// window around it.
///
/// Thread: main thread only.
class FrontWindowReader {
public:
    explicit FrontWindowReader(const XcbConnection& x);

    /// Nothing without an active window or X server, or when the window closes meanwhile.
    [[nodiscard]] std::optional<FrontWindow> read() const;

private:
    [[nodiscard]] xcb_window_t activeWindow() const;
    [[nodiscard]] xcb_window_t windowWithFocus() const;
    [[nodiscard]] xcb_window_t applicationWindowAround(xcb_window_t window) const;

    const XcbConnection& x_;
    WindowReader windows_;
    xcb_atom_t netActiveWindow_;
    xcb_atom_t netSupportingWmCheck_;
};

} // namespace corvandi
