#include "platform/linux/tray/xembed_tray.h"

#include <utility>

namespace corvandi {

XEmbedTray::XEmbedTray(std::function<void()> appeared)
    : appeared_(std::move(appeared))
{
    if (!x_.isUsable())
        return;
    // The tray owns the selection of this name; the number is that of the X screen, of which today's
    // servers have one.
    selection_ = x_.atom("_NET_SYSTEM_TRAY_S0");
    manager_ = x_.atom("MANAGER");
    const uint32_t announcements = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(x_.get(), x_.root(), XCB_CW_EVENT_MASK, &announcements);
    x_.flush();
    events_.emplace(x_.fileDescriptor(), QSocketNotifier::Read);
    QObject::connect(&*events_, &QSocketNotifier::activated, &*events_, [this] { readEvents(); });
}

bool XEmbedTray::isThere() const
{
    if (!x_.isUsable())
        return false;
    const auto owner = x_.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(x_.get(), selection_));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

void XEmbedTray::readEvents()
{
    bool isAnnounced = false;
    while (const auto event = x_.pollEvent())
        isAnnounced = isAnnouncement(*event) || isAnnounced;
    if (!x_.isUsable())
        events_->setEnabled(false);
    if (isAnnounced)
        appeared_();
}

bool XEmbedTray::isAnnouncement(const xcb_generic_event_t& event) const
{
    if (eventType(event) != XCB_CLIENT_MESSAGE)
        return false;
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
    return message.type == manager_ && message.data.data32[1] == selection_;
}

} // namespace corvandi
