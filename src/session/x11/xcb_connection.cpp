#include "session/x11/xcb_connection.h"

#include <QGuiApplication>

namespace corvandi {

xcb_atom_t atomOf(xcb_connection_t* connection, std::string_view name)
{
    constexpr uint8_t makeIfMissing = 0;
    const auto answer =
        replyOf(connection, xcb_intern_atom_reply,
                xcb_intern_atom(connection, makeIfMissing, static_cast<uint16_t>(name.size()), name.data()));
    return answer ? answer->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

xcb_connection_t* toolkitConnection()
{
    const auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

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

namespace {

XcbPtr<xcb_get_property_reply_t> answer(const XcbConnection& x, PropertyRequest request, uint8_t format)
{
    auto reply = x.reply(xcb_get_property_reply, request.cookie);
    if (reply && reply->format != format)
        reply.reset();
    return reply;
}

} // namespace

PropertyRequest requestProperty(const XcbConnection& x, xcb_window_t window, xcb_atom_t property,
                                uint32_t maxBytes)
{
    constexpr uint8_t keep = 0;
    constexpr uint32_t fromTheStart = 0;
    constexpr uint32_t bytesPerWord = 4;
    return {xcb_get_property(x.get(), keep, window, property, XCB_GET_PROPERTY_TYPE_ANY, fromTheStart,
                             (maxBytes + bytesPerWord - 1) / bytesPerWord)};
}

std::string textOf(const XcbConnection& x, PropertyRequest request)
{
    const auto reply = answer(x, request, 8);
    if (!reply)
        return {};
    const auto* bytes = static_cast<const char*>(xcb_get_property_value(reply.get()));
    return {bytes, static_cast<size_t>(xcb_get_property_value_length(reply.get()))};
}

std::vector<uint32_t> wordsOf(const XcbConnection& x, PropertyRequest request)
{
    const auto reply = answer(x, request, 32);
    if (!reply)
        return {};
    const auto* words = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
    return {words, words + xcb_get_property_value_length(reply.get()) / static_cast<int>(sizeof(uint32_t))};
}

} // namespace corvandi
