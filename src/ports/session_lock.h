#pragma once

#include "base/main_queue.h"

#include <functional>
#include <memory>

namespace corvandi {

/// Whether somebody else may be sitting in front of the screen: the session is locked, or a screen saver
/// covers it. (Most screen savers don't say which of the two it is.)
///
/// Thread: main thread only.
class SessionLock {
public:
    virtual ~SessionLock() = default;

    /// What is known now. Waits for no program but the window system: a millisecond or two. Not locked when
    /// nobody says so.
    [[nodiscard]] virtual bool isLocked() const = 0;
    /// Calls back after every change of `isLocked`, at most a fifth of a second later and never inside this
    /// call, until the registration is destroyed, which the callback may do. A registration may cost a few
    /// looks a second, so it is to be held only as long as a change matters. The lock outlives it.
    [[nodiscard]] virtual std::unique_ptr<Registration> onChange(std::function<void()> callback) = 0;
};

} // namespace corvandi
