#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace corvandi {

/// Hands the events of one connection to its owner, from the event loop of the main thread.
///
/// The callbacks may destroy the pump. Thread: main thread only.
class X11EventPump {
public:
    using Handler = std::function<void(const xcb_generic_event_t&)>;

    /// `connection` must outlive the pump. `lost` is called once if the connection breaks; nothing is
    /// called after that.
    X11EventPump(const X11Connection& connection, Handler handler, std::function<void()> lost);
    ~X11EventPump();

    X11EventPump(const X11EventPump&) = delete;
    X11EventPump& operator=(const X11EventPump&) = delete;

    /// Handles, in the next turn of the event loop, what has been read from the socket together with a
    /// reply: the socket itself won't announce it again. Call it after each round trip.
    void drainSoon();

private:
    void drain();

    const X11Connection& connection_;
    Handler handler_;
    std::function<void()> lost_;
    QSocketNotifier notifier_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace corvandi
