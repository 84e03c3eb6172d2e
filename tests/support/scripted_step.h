#pragma once

#include "base/awaitables.h"
#include "base/error.h"

#include <QCoroTask>

#include <QString>

#include <optional>
#include <utility>
#include <vector>

namespace corvandi::testing {

/// One asynchronous operation of a faked facility. It succeeds at once, unless it was told to fail or
/// to stay pending. A test releases what it held before it ends: a task that is never resumed leaks.
class ScriptedStep {
public:
    /// From now on calls end with an `Error` of this description.
    void fail(const QString& description) { failure_ = description; }
    /// From now on calls succeed again.
    void succeed() { failure_.reset(); }
    /// From now on calls stay pending until `release`.
    void hold() { holds_ = true; }
    /// Ends the calls that are pending, as they are scripted now; later ones don't stay pending.
    void release()
    {
        holds_ = false;
        for (const OneShot<Done>& call : std::exchange(pending_, {}))
            call.complete(Done{});
    }

    [[nodiscard]] int callCount() const { return callCount_; }
    [[nodiscard]] bool isPending() const { return !pending_.empty(); }

    /// What the fake awaits.
    [[nodiscard]] QCoro::Task<> run()
    {
        ++callCount_;
        if (holds_) {
            const OneShot<Done> released;
            pending_.push_back(released);
            co_await released;
        }
        if (failure_)
            throw Error(*failure_);
    }

private:
    std::optional<QString> failure_;
    std::vector<OneShot<Done>> pending_;
    bool holds_ = false;
    int callCount_ = 0;
};

} // namespace corvandi::testing
