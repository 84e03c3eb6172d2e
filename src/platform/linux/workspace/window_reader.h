#pragma once

#include "platform/linux/xcb/xcb_connection.h"
#include "platform/linux/xcb/xcb_property.h"

#include <QString>

#include <sys/types.h>
#include <xcb/res.h>

#include <optional>

namespace corvandi {

/// What a window says about itself.
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
    /// It is a window of its own, not a panel, a palette, a part of the desktop, or kept out of the lists
    /// of windows.
    bool isRegular = true;
};

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

} // namespace corvandi
