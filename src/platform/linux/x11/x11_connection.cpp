#include "platform/linux/x11/x11_connection.h"

#include "platform/linux/x11/xkb_protocol.h"
#include "platform/linux/xcb/xcb_ptr.h"

#include <tuple>

#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace corvandi {
namespace {

/// Raw events reach us although another client holds a grab since 2.1; 2.2 is what servers of the last
/// decade have.
constexpr std::tuple<uint16_t, uint16_t> xinputVersion{2, 2};

xcb_window_t rootOf(xcb_connection_t* connection, int screenNumber)
{
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screenNumber > 0 && screen.rem > 1; --screenNumber)
        xcb_screen_next(&screen);
    return screen.data->root;
}

bool hasXinput(xcb_connection_t* connection)
{
    const auto [major, minor] = xinputVersion;
    const auto reply = owned(xcb_input_xi_query_version_reply(
        connection, xcb_input_xi_query_version(connection, major, minor), nullptr));
    return reply && std::tuple(reply->major_version, reply->minor_version) >= xinputVersion;
}

bool hasXkb(xcb_connection_t* connection)
{
    const auto reply = owned(xcb_xkb_use_extension_reply(
        connection, xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION),
        nullptr));
    return reply && reply->supported;
}

} // namespace

std::optional<X11Connection> X11Connection::open(SystemLog& log)
{
    int screenNumber = 0;
    X11Connection connection(xcb_connect(nullptr, &screenNumber));
    if (connection.isBroken()) {
        log.write(QStringLiteral("no connection to the X server"));
        return std::nullopt;
    }
    connection.root_ = rootOf(connection.get(), screenNumber);
    if (const char* missing = connection.negotiateExtensions()) {
        log.write(QStringLiteral("the X server has no %1").arg(QLatin1String(missing)));
        return std::nullopt;
    }
    return connection;
}

void X11Connection::sync() const
{
    (void)owned(xcb_get_input_focus_reply(get(), xcb_get_input_focus(get()), nullptr));
}

const char* X11Connection::negotiateExtensions()
{
    for (xcb_extension_t* extension : {&xcb_input_id, &xcb_xkb_id, &xcb_test_id})
        xcb_prefetch_extension_data(get(), extension);
    const auto* xinput = xcb_get_extension_data(get(), &xcb_input_id);
    const auto* xkb = xcb_get_extension_data(get(), &xcb_xkb_id);
    const auto* xtest = xcb_get_extension_data(get(), &xcb_test_id);
    if (!xinput || !xinput->present || !hasXinput(get()))
        return "XInput 2.2";
    if (!xkb || !xkb->present || !hasXkb(get()))
        return "XKB";
    if (!xtest || !xtest->present)
        return "XTEST";
    xinputOpcode_ = xinput->major_opcode;
    xinputFirstEvent_ = xinput->first_event;
    xkbFirstEvent_ = xkb->first_event;
    return nullptr;
}

} // namespace corvandi
