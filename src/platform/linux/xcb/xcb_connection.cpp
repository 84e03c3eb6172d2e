#include "platform/linux/xcb/xcb_connection.h"

namespace corvandi {
namespace {

xcb_window_t rootOf(xcb_connection_t* connection, int screenNumber)
{
    if (xcb_connection_has_error(connection) != 0)
        return XCB_WINDOW_NONE;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 1 && screenNumber > 0; --screenNumber)
        xcb_screen_next(&screens);
    return screens.data->root;
}

} // namespace

XcbConnection::XcbConnection()
{
    int screen = 0;
    connection_.reset(xcb_connect(nullptr, &screen));
    root_ = rootOf(connection_.get(), screen);
}

xcb_atom_t XcbConnection::atom(std::string_view name) const
{
    constexpr uint8_t makeIfMissing = 0;
    const auto answer =
        reply(xcb_intern_atom_reply,
              xcb_intern_atom(get(), makeIfMissing, static_cast<uint16_t>(name.size()), name.data()));
    return answer ? answer->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

bool XcbConnection::hasExtension(std::string_view name) const
{
    const auto answer = reply(xcb_query_extension_reply,
                              xcb_query_extension(get(), static_cast<uint16_t>(name.size()), name.data()));
    return answer && answer->present != 0;
}

void XcbConnection::sync() const
{
    (void)reply(xcb_get_input_focus_reply, xcb_get_input_focus(get()));
}

XcbPtr<xcb_generic_event_t> XcbConnection::pollEvent() const
{
    while (true) {
        auto event = owned(xcb_poll_for_event(get()));
        // Type 0 is an error that belongs to a request whose answer nobody waits for, such as the
        // deletion of a window that has already gone.
        if (!event || event->response_type != 0)
            return event;
    }
}

} // namespace corvandi
