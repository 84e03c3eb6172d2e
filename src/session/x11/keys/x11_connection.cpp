#include "session/x11/keys/x11_connection.h"

#include "session/x11/keys/keymap_reader.h"
#include "session/x11/xcb_connection.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <tuple>

namespace corvandi {
namespace {

/// Raw events reach us although another client holds a grab since 2.1; 2.2 is what servers of the last
/// decade have.
constexpr std::tuple<uint16_t, uint16_t> xinputVersion{2, 2};

bool hasXinput(const XcbConnection& x)
{
    const auto [major, minor] = xinputVersion;
    const auto reply =
        x.reply(xcb_input_xi_query_version_reply, xcb_input_xi_query_version(x.get(), major, minor));
    return reply && std::tuple(reply->major_version, reply->minor_version) >= xinputVersion;
}

bool hasXkb(const XcbConnection& x)
{
    const auto reply = x.reply(xcb_xkb_use_extension_reply,
                               xcb_xkb_use_extension(x.get(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION));
    return reply && reply->supported;
}

} // namespace

std::optional<X11Connection> X11Connection::open(SystemLog& log)
{
    X11Connection connection;
    if (!connection.isUsable()) {
        log.write(QStringLiteral("no connection to the X server"));
        return std::nullopt;
    }
    if (const char* missing = connection.negotiateExtensions()) {
        log.write(QStringLiteral("the X server has no %1").arg(QLatin1String(missing)));
        return std::nullopt;
    }
    return connection;
}

bool X11Connection::isPossible()
{
    X11Connection connection;
    return connection.isUsable() && !connection.negotiateExtensions();
}

const char* X11Connection::negotiateExtensions()
{
    for (xcb_extension_t* extension : {&xcb_input_id, &xcb_xkb_id, &xcb_test_id})
        xcb_prefetch_extension_data(get(), extension);
    const auto* xinput = xcb_get_extension_data(get(), &xcb_input_id);
    const auto* xkb = xcb_get_extension_data(get(), &xcb_xkb_id);
    const auto* xtest = xcb_get_extension_data(get(), &xcb_test_id);
    if (!xinput || !xinput->present || !hasXinput(*this))
        return "XInput 2.2";
    if (!xkb || !xkb->present || !hasXkb(*this))
        return "XKB";
    if (!xtest || !xtest->present)
        return "XTEST";
    xinputOpcode_ = xinput->major_opcode;
    xinputFirstEvent_ = xinput->first_event;
    xkbFirstEvent_ = xkb->first_event;
    return nullptr;
}

X11EventPump::X11EventPump(const X11Connection& connection, Handler handler, std::function<void()> lost)
    : connection_(connection)
    , handler_(std::move(handler))
    , lost_(std::move(lost))
    , notifier_(xcb_get_file_descriptor(connection.get()), QSocketNotifier::Read)
{
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { drain(); });
    drainSoon();
}

void X11EventPump::drainSoon()
{
    QMetaObject::invokeMethod(
        &notifier_, [this] { drain(); }, Qt::QueuedConnection);
}

void X11EventPump::drain()
{
    if (!notifier_.isEnabled())
        return;
    const auto life = life_.watch();
    while (const auto event = owned(xcb_poll_for_event(connection_.get()))) {
        handler_(*event);
        if (life.expired())
            return;
    }
    if (!connection_.isUsable()) {
        notifier_.setEnabled(false);
        lost_();
    }
}

} // namespace corvandi
