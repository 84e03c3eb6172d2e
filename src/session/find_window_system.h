#pragma once

#include "ports/desktop_session.h"

#include <QString>

#include <functional>
#include <memory>
#include <variant>

namespace corvandi {

/// A window system that this program can work in. The toolkit must be told of it before its application
/// object is made, and the session needs that object; hence two steps.
struct WindowSystem {
    /// The name of the toolkit's plugin for it.
    QString toolkitPlatform;
    std::function<std::unique_ptr<DesktopSession>(SessionNeeds)> openSession;
};

/// Why there can be no session.
struct SessionRefusal {
    /// For the log: what was found, and what to do.
    QString reason;
    /// For the person, where there is a desktop on which it can be said; else empty.
    QString words;
    /// The names of the toolkit's plugins with which to say it, the best first.
    QString toolkitPlatform;
};

/// What the environment says about the session.
struct SessionEnvironment {
    /// XDG_SESSION_TYPE, WAYLAND_DISPLAY and DISPLAY; empty when not set.
    QString sessionType;
    QString waylandDisplay;
    QString x11Display;

    [[nodiscard]] static SessionEnvironment current();
};

/// The window system of the session that this process was started in, or why there is none to work in.
/// A Wayland session is refused although it offers an X server for older programs: that one never hears
/// of keys that are struck in other windows, so the hotkey would be dead.
///
/// Takes a few round trips to the X server.
[[nodiscard]] std::variant<WindowSystem, SessionRefusal>
findWindowSystem(const SessionEnvironment& environment);

} // namespace corvandi
