#pragma once

#include "base/system_log.h"
#include "platform/linux/xcb/xcb_connection.h"

#include <cstdint>
#include <optional>

namespace corvandi {

/// A connection with the extensions that the keyboard needs: XInput 2.2 or later, XKB and XTEST. Never Qt's
/// connection: its events are Qt's.
class X11Connection : public XcbConnection {
public:
    /// Nothing when there is no server or an extension is missing; the log says which.
    [[nodiscard]] static std::optional<X11Connection> open(SystemLog& log);

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

} // namespace corvandi
