#include "session/find_window_system.h"

#include "session/x11/x11_desktop_session.h"
#include "session/x11/xcb_connection.h"

#include <QCoreApplication>

namespace corvandi {
namespace {

bool isWayland(const SessionEnvironment& environment, const XcbConnection& x)
{
    // The X server that a Wayland desktop starts says so itself; older ones only the environment tells.
    return !environment.waylandDisplay.isEmpty() || environment.sessionType == QLatin1String("wayland") ||
           (x.isUsable() && x.hasExtension("XWAYLAND"));
}

SessionRefusal waylandRefusal()
{
    return {
        .reason = QStringLiteral("this is a Wayland session, in which no hotkey can be watched yet; "
                                 "log in to an X11 session"),
        .words = QCoreApplication::translate(
            "SessionRefusal", "Corvandi can't work in a Wayland session yet. Log in to an X11 session."),
        .toolkitPlatform = QStringLiteral("xcb;wayland"),
    };
}

} // namespace

SessionEnvironment SessionEnvironment::current()
{
    return {
        .sessionType = qEnvironmentVariable("XDG_SESSION_TYPE"),
        .waylandDisplay = qEnvironmentVariable("WAYLAND_DISPLAY"),
        .x11Display = qEnvironmentVariable("DISPLAY"),
    };
}

std::variant<WindowSystem, SessionRefusal> findWindowSystem(const SessionEnvironment& environment)
{
    const XcbConnection x;
    if (isWayland(environment, x))
        return waylandRefusal();
    // The toolkit would end the process without a word of ours.
    if (!x.isUsable())
        return SessionRefusal{QStringLiteral("no graphical session: the X display \"%1\" can't be opened")
                                  .arg(environment.x11Display),
                              {},
                              {}};
    return WindowSystem{
        .toolkitPlatform = QStringLiteral("xcb"),
        .openSession = [](SessionNeeds needs) -> std::unique_ptr<DesktopSession> {
            return std::make_unique<X11DesktopSession>(std::move(needs));
        },
    };
}

} // namespace corvandi
