#pragma once

#include "base/worker.h"
#include "ports/system_log.h"
#include "session/x11/xcb_connection.h"

#include <QSocketNotifier>

#include <cstdint>
#include <functional>
#include <optional>

namespace corvandi {

/// A connection with the extensions that the keyboard needs: XInput 2.2 or later, XKB and XTEST. Never Qt's
/// connection: its events are Qt's.
class X11Connection : public XcbConnection {
public:
    /// Nothing when there is no server or an extension is missing; the log says which.
    [[nodiscard]] static std::optional<X11Connection> open(SystemLog& log);
    /// Whether there is a server with all extensions: waits for a connection and a few round trips.
    [[nodiscard]] static bool isPossible();

    [[nodiscard]] uint8_t xinputOpcode() const { return xinputOpcode_; }
    [[nodiscard]] uint8_t xinputFirstEvent() const { return xinputFirstEvent_; }
    [[nodiscard]] uint8_t xkbFirstEvent() const { return xkbFirstEvent_; }

private:
    X11Connection() = default;

    /// The name of the first extension that is missing or too old; nothing when all are there.
    [[nodiscard]] const char* negotiateExtensions();

    uint8_t xinputOpcode_ = 0;
    uint8_t xinputFirstEvent_ = 0;
    uint8_t xkbFirstEvent_ = 0;
};

/// Hands the events of one connection to its owner, from the event loop of the main thread.
///
/// The callbacks may destroy the pump. Thread: main thread only.
class X11EventPump {
public:
    using Handler = std::function<void(const xcb_generic_event_t&)>;

    /// `connection` must outlive the pump. `lost` is called once if the connection breaks; nothing is
    /// called after that.
    X11EventPump(const X11Connection& connection, Handler handler, std::function<void()> lost);

    X11EventPump(const X11EventPump&) = delete;
    X11EventPump& operator=(const X11EventPump&) = delete;

    /// Handles, in the next turn of the event loop, what has been read from the socket together with a
    /// reply: the socket itself won't announce it again. Call it after each round trip.
    void drainSoon();
    /// Handles now what has arrived.
    void drain();

private:
    const X11Connection& connection_;
    Handler handler_;
    std::function<void()> lost_;
    QSocketNotifier notifier_;
    Life life_;
};

} // namespace corvandi
