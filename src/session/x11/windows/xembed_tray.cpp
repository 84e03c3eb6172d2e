#include "session/x11/windows/xembed_tray.h"

#include <QSocketNotifier>

#include <utility>

namespace corvandi {

/// Hears the root window's announcements while it lives.
class XEmbedTray::Watch : public Registration {
public:
    Watch(XEmbedTray& tray, std::function<void()> appeared)
        : tray_(tray)
        , appeared_(std::move(appeared))
        , events_(tray.x_.fileDescriptor(), QSocketNotifier::Read)
    {
        hear(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        QObject::connect(&events_, &QSocketNotifier::activated, &events_, [this] { readEvents(); });
    }
    ~Watch() override { hear(XCB_EVENT_MASK_NO_EVENT); }

    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

private:
    void hear(uint32_t announcements)
    {
        xcb_change_window_attributes(tray_.x_.get(), tray_.x_.root(), XCB_CW_EVENT_MASK, &announcements);
        tray_.x_.flush();
    }

    void readEvents()
    {
        bool isAnnounced = false;
        while (const auto event = tray_.x_.pollEvent())
            isAnnounced = tray_.isAnnouncement(*event) || isAnnounced;
        if (!tray_.x_.isUsable())
            events_.setEnabled(false);
        // The callback may destroy this watch.
        if (const std::function<void()> appeared = appeared_; isAnnounced)
            appeared();
    }

    XEmbedTray& tray_;
    std::function<void()> appeared_;
    QSocketNotifier events_;
};

XEmbedTray::XEmbedTray()
{
    if (!x_.isUsable())
        return;
    // The tray owns the selection of this name; the number is that of the X screen, of which today's
    // servers have one.
    selection_ = x_.atom("_NET_SYSTEM_TRAY_S0");
    manager_ = x_.atom("MANAGER");
}

bool XEmbedTray::isThere() const
{
    if (!x_.isUsable())
        return false;
    const auto owner = x_.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(x_.get(), selection_));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

std::unique_ptr<Registration> XEmbedTray::watch(std::function<void()> appeared)
{
    if (!x_.isUsable())
        return std::make_unique<Registration>();
    return std::make_unique<Watch>(*this, std::move(appeared));
}

bool XEmbedTray::isAnnouncement(const xcb_generic_event_t& event) const
{
    if (eventType(event) != XCB_CLIENT_MESSAGE)
        return false;
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
    return message.type == manager_ && message.data.data32[1] == selection_;
}

} // namespace corvandi
