#pragma once

#include "base/main_queue.h"

#include <functional>
#include <memory>

namespace corvandi {

/// A tray of the older kind: a window of the window system that embeds the icons' windows. A window system
/// without such trays never has one.
///
/// Thread: main thread only.
class WindowTray {
public:
    virtual ~WindowTray() = default;

    /// Whether there is one now. At most a millisecond.
    [[nodiscard]] virtual bool isThere() const = 0;
    /// `appeared` runs each time that such a tray starts, as long as the registration lives, which the tray
    /// outlives. One watcher at a time.
    [[nodiscard]] virtual std::unique_ptr<Registration> watch(std::function<void()> appeared) = 0;
};

} // namespace corvandi
