#pragma once

#include "base/awaitables.h"
#include "base/error.h"

#include <QCoroTask>

#include <QString>

#include <exception>
#include <memory>
#include <optional>
#include <type_traits>

namespace corvandi::testing {

/// Watches a task: whether it has ended, and how. Copies look at the same task.
template<class T = void>
class TaskOutcome {
    using Value = std::conditional_t<std::is_void_v<T>, Done, T>;

    struct State {
        std::optional<Value> value;
        std::exception_ptr error;
    };

public:
    explicit TaskOutcome(QCoro::Task<T> task)
    {
        const QCoro::Task<> watching = watch(std::move(task), state_);
    }

    [[nodiscard]] bool hasEnded() const { return state_->value || state_->error; }
    [[nodiscard]] bool hasSucceeded() const { return state_->value.has_value(); }
    [[nodiscard]] bool hasFailed() const { return state_->error != nullptr; }
    /// What the task returned; it must have succeeded.
    [[nodiscard]] const Value& value() const { return state_->value.value(); }
    /// The description of the error with which the task failed; empty when it hasn't.
    [[nodiscard]] QString failure() const
    {
        try {
            rethrow();
        } catch (const std::exception& error) {
            return describe(error);
        }
        return {};
    }
    /// Throws the error with which the task failed, if it has.
    void rethrow() const
    {
        if (state_->error)
            std::rethrow_exception(state_->error);
    }

private:
    static QCoro::Task<> watch(QCoro::Task<T> task, std::shared_ptr<State> state)
    {
        try {
            if constexpr (std::is_void_v<T>) {
                co_await task;
                state->value.emplace();
            } else {
                T result = co_await task;
                state->value.emplace(std::move(result));
            }
        } catch (...) {
            state->error = std::current_exception();
        }
    }

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace corvandi::testing
