#include "session/x11/keys/x11_session.h"

#include "session/x11/xcb_connection.h"

#include <QProcess>

namespace corvandi::testing {

bool run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

bool setLayout(const QString& layout, const QString& variant)
{
    return run(QStringLiteral("setxkbmap"),
               {QStringLiteral("-layout"), layout, QStringLiteral("-variant"), variant});
}

bool isGrabbed(const X11Connection& connection, uint8_t keyCode, uint16_t modifiers)
{
    xcb_connection_t* server = connection.get();
    xcb_grab_server(server);
    const auto cookie = xcb_grab_key_checked(server, 0, connection.root(), modifiers, keyCode,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const auto refusal = corvandi::owned(xcb_request_check(server, cookie));
    if (!refusal)
        xcb_ungrab_key(server, keyCode, connection.root(), modifiers);
    xcb_ungrab_server(server);
    connection.flush();
    return refusal && refusal->error_code == XCB_ACCESS;
}

} // namespace corvandi::testing
