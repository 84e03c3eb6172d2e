#include "platform/linux/hud_panel/compositor.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace corvandi {
namespace {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
template<class Reply>
using ReplyPtr = std::unique_ptr<Reply, FreeReply>;

// A compositor owns the selection of this name; the number is that of the X screen, of which today's
// servers have one.
constexpr std::string_view compositorSelection = "_NET_WM_CM_S0";

xcb_connection_t* serverConnection()
{
    const auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

} // namespace

bool isCompositorRunning()
{
    xcb_connection_t* server = serverConnection();
    if (!server)
        return false;
    const auto atomRequest =
        xcb_intern_atom(server, 0, compositorSelection.size(), compositorSelection.data());
    const ReplyPtr<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(server, atomRequest, nullptr));
    if (!atom)
        return false;
    const auto ownerRequest = xcb_get_selection_owner(server, atom->atom);
    const ReplyPtr<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(server, ownerRequest, nullptr));
    return owner && owner->owner != XCB_NONE;
}

} // namespace corvandi
