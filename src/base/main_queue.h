#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace corvandi {

/// Something that was registered somewhere. Destroying it takes the registration back; its callback
/// never runs after that.
class Registration {
public:
    virtual ~Registration() = default;
};

/// A repeating or one-shot timer. Destroying it cancels it; a callback never runs after that.
class Timer {
public:
    virtual ~Timer() = default;
};

/// The thread on which all decisions are made, with its clock. Callbacks run in the order in which
/// they become due, one at a time, never inside the call that asked for them.
///
/// Thread: `async` may be called from any thread, everything else from the main thread only.
class MainQueue {
public:
    using Duration = std::chrono::nanoseconds;

    virtual ~MainQueue() = default;

    /// Monotonic time since an arbitrary start; does not stop while the machine sleeps.
    [[nodiscard]] virtual Duration now() const = 0;
    /// Runs `work` once, later, on the main thread. Work that is still waiting when the queue is
    /// destroyed is dropped.
    virtual void async(std::function<void()> work) = 0;
    /// Runs `work` once, `delay` from now; a delay of zero or less is as soon as possible.
    [[nodiscard]] virtual std::unique_ptr<Timer> after(Duration delay, std::function<void()> work) = 0;
    /// Runs `work` every `interval`, the first time one interval from now. `work` may destroy its timer.
    [[nodiscard]] virtual std::unique_ptr<Timer> every(Duration interval, std::function<void()> work) = 0;
};

} // namespace corvandi
