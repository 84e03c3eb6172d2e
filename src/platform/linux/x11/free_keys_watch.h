#pragma once

#include "base/registration.h"
#include "platform/linux/x11/x11_connection.h"

#include <functional>
#include <memory>
#include <vector>

namespace corvandi {

/// Waits for the moment at which no modifier key is down. Modifier changes are asked of the server only
/// while somebody waits.
///
/// Thread: main thread only.
class FreeKeysWatch {
public:
    /// `connection` must outlive the watch.
    explicit FreeKeysWatch(const X11Connection& connection)
        : connection_(connection)
    {
    }

    /// Calls `callback` once: inside this call when no modifier is held (or the server has gone). One
    /// round trip.
    [[nodiscard]] std::unique_ptr<Registration> add(std::function<void()> callback);
    /// To be called with every event of the connection.
    void handle(const xcb_generic_event_t& event);

private:
    class Waiter;

    void report();

    const X11Connection& connection_;
    std::vector<std::weak_ptr<std::function<void()>>> waiting_;
};

} // namespace corvandi
