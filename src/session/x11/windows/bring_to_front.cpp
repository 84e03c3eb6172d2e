#include "session/x11/windows/bring_to_front.h"

#include <QGuiApplication>
#include <QWidget>

#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>

namespace corvandi {
namespace {

/// Who asks, as window managers distinguish: an application for itself, or the user by way of a tool.
constexpr uint32_t askedByUser = 2;

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

xcb_atom_t activeWindowAtom(xcb_connection_t* connection)
{
    constexpr std::string_view name = "_NET_ACTIVE_WINDOW";
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace

void bringToFront(const QWidget& window)
{
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return;
    // The toolkit's own connection: so the request comes after those that have shown the window.
    xcb_connection_t* connection = x11->connection();
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = static_cast<xcb_window_t>(window.effectiveWinId());
    event.type = activeWindowAtom(connection);
    event.data.data32[0] = askedByUser;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    constexpr uint32_t toWindowManager =
        XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_send_event(connection, 0, root, toWindowManager, reinterpret_cast<const char*>(&event));
    xcb_flush(connection);
}

} // namespace corvandi
