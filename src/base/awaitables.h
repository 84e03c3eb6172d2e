#pragma once

#include "base/main_queue.h"

#include <coroutine>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

namespace corvandi {

/// A result that several producers may try to deliver: the first one wins, later ones are ignored.
/// Copies share the same slot. At most one coroutine awaits it (`co_await slot`); it is resumed inside
/// the call that completes the slot.
///
/// Thread: main thread only.
template<class T>
class OneShot {
    struct State {
        std::optional<T> value;
        std::exception_ptr error;
        std::coroutine_handle<> waiter;
        [[nodiscard]] bool isCompleted() const { return value.has_value() || error != nullptr; }
    };

public:
    /// Delivers `value`. Returns false, and drops it, when a result was delivered before.
    bool complete(T value) const
    {
        // Held by value: the resumed coroutine may destroy the last other copy of this slot.
        const std::shared_ptr<State> state = state_;
        if (state->isCompleted())
            return false;
        state->value.emplace(std::move(value));
        wake(*state);
        return true;
    }

    /// Makes the awaiting coroutine throw `error`. Returns false when a result was delivered before.
    bool fail(std::exception_ptr error) const
    {
        const std::shared_ptr<State> state = state_;
        if (state->isCompleted())
            return false;
        state->error = std::move(error);
        wake(*state);
        return true;
    }

    [[nodiscard]] bool isCompleted() const { return state_->isCompleted(); }

    auto operator co_await() const
    {
        struct Awaiter {
            std::shared_ptr<State> state;
            [[nodiscard]] bool await_ready() const noexcept { return state->isCompleted(); }
            void await_suspend(std::coroutine_handle<> waiter) const { state->waiter = waiter; }
            T await_resume() const
            {
                if (state->error)
                    std::rethrow_exception(state->error);
                return std::move(*state->value);
            }
        };
        return Awaiter{state_};
    }

private:
    static void wake(State& state)
    {
        if (auto waiter = std::exchange(state.waiter, {}))
            waiter.resume();
    }

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

/// The value of a slot that only says that something has happened.
struct Done {};

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
