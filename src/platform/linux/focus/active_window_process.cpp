#include "platform/linux/focus/active_window_process.h"

#include "platform/linux/x11/xcb_ptr.h"

#include <string_view>

#include <xcb/res.h>

namespace corvandi {
namespace {

xcb_intern_atom_cookie_t askAtom(xcb_connection_t* connection, std::string_view name)
{
    return xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.data());
}

xcb_atom_t atomOf(xcb_connection_t* connection, xcb_intern_atom_cookie_t cookie)
{
    const auto reply = owned(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace

ActiveWindowProcess::ActiveWindowProcess(SystemLog& log)
    : connection_(X11Connection::open(log))
{
    if (connection_)
        atoms_ = internAtoms();
}

ActiveWindowProcess::Atoms ActiveWindowProcess::internAtoms() const
{
    xcb_connection_t* const connection = connection_->get();
    const auto activeWindow = askAtom(connection, "_NET_ACTIVE_WINDOW");
    const auto windowProcess = askAtom(connection, "_NET_WM_PID");
    return {atomOf(connection, activeWindow), atomOf(connection, windowProcess)};
}

std::optional<pid_t> ActiveWindowProcess::operator()() const
{
    if (!connection_)
        return std::nullopt;
    const auto window = number(connection_->root(), atoms_.activeWindow, XCB_ATOM_WINDOW);
    if (!window || *window == XCB_WINDOW_NONE)
        return std::nullopt;
    if (const auto process = number(*window, atoms_.windowProcess, XCB_ATOM_CARDINAL))
        return static_cast<pid_t>(*process);
    return processOfClient(*window);
}

std::optional<uint32_t> ActiveWindowProcess::number(xcb_window_t window, xcb_atom_t property,
                                                    xcb_atom_t type) const
{
    xcb_connection_t* const connection = connection_->get();
    const auto reply = owned(xcb_get_property_reply(
        connection, xcb_get_property(connection, 0, window, property, type, 0, 1), nullptr));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) != sizeof(uint32_t))
        return std::nullopt;
    return *static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
}

std::optional<pid_t> ActiveWindowProcess::processOfClient(xcb_window_t window) const
{
    xcb_connection_t* const connection = connection_->get();
    const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto reply = owned(xcb_res_query_client_ids_reply(
        connection, xcb_res_query_client_ids(connection, 1, &wanted), nullptr));
    if (!reply)
        return std::nullopt;
    for (auto id = xcb_res_query_client_ids_ids_iterator(reply.get()); id.rem > 0;
         xcb_res_client_id_value_next(&id)) {
        if (xcb_res_client_id_value_value_length(id.data) > 0)
            return static_cast<pid_t>(*xcb_res_client_id_value_value(id.data));
    }
    return std::nullopt;
}

} // namespace corvandi
