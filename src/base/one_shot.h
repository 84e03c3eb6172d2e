#pragma once

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

} // namespace corvandi
