#pragma once

#include "base/main_queue.h"
#include "base/one_shot.h"

#include <QCoroTask>

#include <deque>

namespace corvandi {

/// Lets coroutines pass one at a time, in the order in which they came.
///
/// Thread: main thread only. The gate must outlive everyone who waits at it.
class TurnGate {
public:
    explicit TurnGate(MainQueue& queue)
        : queue_(queue)
    {
    }

    /// Ends when it is the caller's turn, at once when nobody is inside. The caller calls `leave` at
    /// the end of its turn.
    [[nodiscard]] QCoro::Task<> enter();
    /// Lets the next one in, in a turn of the main queue of its own.
    void leave();
    [[nodiscard]] bool isOccupied() const { return occupied_; }

private:
    MainQueue& queue_;
    std::deque<OneShot<Done>> waiting_;
    bool occupied_ = false;
};

} // namespace corvandi
