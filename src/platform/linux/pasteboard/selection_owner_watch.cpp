#include "platform/linux/pasteboard/selection_owner_watch.h"

#include <xcb/xfixes.h>

namespace corvandi {
namespace {

/// The number of XFixes' selection event on this server; 0 without XFixes.
uint8_t negotiateXFixes(const XcbConnection& x)
{
    const auto* extension = xcb_get_extension_data(x.get(), &xcb_xfixes_id);
    if (!extension || extension->present == 0)
        return 0;
    // The server refuses every other request of a client that has not stated its version.
    const auto version =
        x.reply(xcb_xfixes_query_version_reply,
                xcb_xfixes_query_version(x.get(), XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION));
    return version ? static_cast<uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY) : uint8_t{0};
}

} // namespace

SelectionOwnerWatch::SelectionOwnerWatch(const XcbConnection& x, xcb_atom_t selection)
    : eventType_(negotiateXFixes(x))
    , selection_(selection)
{
    if (!isWatching())
        return;
    xcb_xfixes_select_selection_input(x.get(), x.root(), selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    x.flush();
}

std::optional<OwnerChange> SelectionOwnerWatch::handle(const xcb_generic_event_t& event)
{
    if (!isWatching() || eventType(event) != eventType_)
        return std::nullopt;
    const auto& notice = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (notice.selection != selection_)
        return std::nullopt;
    ++count_;
    return notice.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER ? OwnerChange::taken
                                                                            : OwnerChange::lost;
}

} // namespace corvandi
