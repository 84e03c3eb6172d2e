#pragma once

#include "base/system_log.h"

#include <cstdint>
#include <memory>
#include <optional>

#include <xcb/xcb.h>

namespace corvandi {

/// A connection of our own to the X server that DISPLAY names, with the extensions that the keyboard
/// needs: XInput 2.2 or later, XKB and XTEST. Never Qt's connection: its events are Qt's.
///
/// Errors of requests that nobody asks about arrive as events, which are ignored; a server that has
/// gone makes every request a no-op and every reply empty, and never ends the program.
class X11Connection {
public:
    /// Nothing when there is no server or an extension is missing; the log says which.
    [[nodiscard]] static std::optional<X11Connection> open(SystemLog& log);

    [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }
    [[nodiscard]] xcb_window_t root() const { return root_; }
    [[nodiscard]] uint8_t xinputOpcode() const { return xinputOpcode_; }
    [[nodiscard]] uint8_t xinputFirstEvent() const { return xinputFirstEvent_; }
    [[nodiscard]] uint8_t xkbFirstEvent() const { return xkbFirstEvent_; }

    [[nodiscard]] bool isBroken() const { return xcb_connection_has_error(get()) != 0; }
    /// Sends what is queued.
    void flush() const { xcb_flush(get()); }
    /// Returns when the server has carried out everything so far: one round trip.
    void sync() const;

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    explicit X11Connection(xcb_connection_t* connection)
        : connection_(connection)
    {
    }

    /// The name of the first extension that is missing or too old; nothing when all are there.
    [[nodiscard]] const char* negotiateExtensions();

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    xcb_window_t root_ = XCB_NONE;
    uint8_t xinputOpcode_ = 0;
    uint8_t xinputFirstEvent_ = 0;
    uint8_t xkbFirstEvent_ = 0;
};

} // namespace corvandi
