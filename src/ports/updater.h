#pragma once

#include "base/main_queue.h"

#include <functional>
#include <memory>

namespace corvandi {

/// Tells the person when there is a newer release.
///
/// Thread: main thread only. No call waits for the network.
class Updater {
public:
    virtual ~Updater() = default;

    /// Begins the life of the updater; called once. From then on it may check on its own, if the person
    /// has asked for that.
    virtual void start() = 0;
    /// Whether `checkForUpdates` would begin a check: false before `start`, while a check runs (with
    /// the question that follows from it), and always when this program has nowhere to look.
    [[nodiscard]] virtual bool canCheckForUpdates() const = 0;
    /// Tells the present value at once, inside this call, and each new one as long as the registration
    /// lives. It may outlive the updater.
    [[nodiscard]] virtual std::unique_ptr<Registration>
    observeCanCheckForUpdates(std::function<void(bool)> observer) = 0;
    /// Checks because a person asked for it; the outcome is shown, whatever it is. While a check runs
    /// already, that one is shown instead.
    virtual void checkForUpdates() = 0;
};

} // namespace corvandi
