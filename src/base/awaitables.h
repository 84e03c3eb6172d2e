#pragma once

#include "base/main_queue.h"

#include <coroutine>
#include <memory>

namespace corvandi {

/// `co_await sleepFor(queue, delay)` suspends the coroutine for `delay` of the queue's time. A
/// coroutine that is destroyed while it sleeps is not resumed.
///
/// Thread: main thread only.
class SleepFor {
public:
    SleepFor(MainQueue& queue, MainQueue::Duration delay)
        : queue_(queue)
        , delay_(delay)
    {
    }

    auto operator co_await() const
    {
        // The timer lives in the awaiter, which stays in place while this description is moved about.
        struct Awaiter {
            MainQueue& queue;
            MainQueue::Duration delay;
            std::unique_ptr<Timer> timer;
            [[nodiscard]] bool await_ready() const noexcept { return false; }
            void await_suspend(std::coroutine_handle<> sleeper)
            {
                timer = queue.after(delay, [sleeper] { sleeper.resume(); });
            }
            void await_resume() const noexcept {}
        };
        return Awaiter{queue_, delay_, nullptr};
    }

private:
    MainQueue& queue_;
    MainQueue::Duration delay_;
};

[[nodiscard]] inline SleepFor sleepFor(MainQueue& queue, MainQueue::Duration delay)
{
    return {queue, delay};
}

/// `co_await nextTurn(queue)` lets everything that is already due on the queue run first. A task that
/// begins with it does nothing inside the call that created it.
///
/// Thread: main thread only.
class NextTurn {
public:
    explicit NextTurn(MainQueue& queue)
        : queue_(queue)
    {
    }

    auto operator co_await() const
    {
        struct Awaiter {
            MainQueue& queue;
            [[nodiscard]] bool await_ready() const noexcept { return false; }
            void await_suspend(std::coroutine_handle<> task) const
            {
                queue.async([task] { task.resume(); });
            }
            void await_resume() const noexcept {}
        };
        return Awaiter{queue_};
    }

private:
    MainQueue& queue_;
};

[[nodiscard]] inline NextTurn nextTurn(MainQueue& queue)
{
    return NextTurn(queue);
}

} // namespace corvandi
