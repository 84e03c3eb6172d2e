#include "app/display_check.h"

#include <xcb/xcb.h>

namespace corvandi {

bool isDisplayReachable()
{
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool reachable = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return reachable;
}

} // namespace corvandi
