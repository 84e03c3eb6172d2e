#include "session/x11/windows/bring_to_front.h"

#include "session/x11/xcb_connection.h"

#include <QWidget>

namespace corvandi {
namespace {

/// Who asks, as window managers distinguish: an application for itself, or the user by way of a tool.
constexpr uint32_t askedByUser = 2;

} // namespace

void bringToFront(const QWidget& window)
{
    // The toolkit's own connection: so the request comes after those that have shown the window.
    xcb_connection_t* connection = toolkitConnection();
    if (!connection)
        return;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = static_cast<xcb_window_t>(window.effectiveWinId());
    event.type = atomOf(connection, "_NET_ACTIVE_WINDOW");
    event.data.data32[0] = askedByUser;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    constexpr uint32_t toWindowManager =
        XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_send_event(connection, 0, root, toWindowManager, reinterpret_cast<const char*>(&event));
    xcb_flush(connection);
}

} // namespace corvandi
