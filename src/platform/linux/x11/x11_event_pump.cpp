#include "platform/linux/x11/x11_event_pump.h"

#include "platform/linux/xcb/xcb_ptr.h"

namespace corvandi {

X11EventPump::X11EventPump(const X11Connection& connection, Handler handler, std::function<void()> lost)
    : connection_(connection)
    , handler_(std::move(handler))
    , lost_(std::move(lost))
    , notifier_(xcb_get_file_descriptor(connection.get()), QSocketNotifier::Read)
{
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { drain(); });
    drainSoon();
}

X11EventPump::~X11EventPump()
{
    *alive_ = false;
}

void X11EventPump::drainSoon()
{
    QMetaObject::invokeMethod(
        &notifier_, [this] { drain(); }, Qt::QueuedConnection);
}

void X11EventPump::drain()
{
    if (!notifier_.isEnabled())
        return;
    const std::shared_ptr<bool> alive = alive_;
    while (const auto event = owned(xcb_poll_for_event(connection_.get()))) {
        handler_(*event);
        if (!*alive)
            return;
    }
    if (!connection_.isUsable()) {
        notifier_.setEnabled(false);
        lost_();
    }
}

} // namespace corvandi
