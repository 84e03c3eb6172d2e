#include "speech/turn_gate.h"

#include <utility>

namespace corvandi {

QCoro::Task<> TurnGate::enter()
{
    if (!std::exchange(occupied_, true))
        co_return;
    const OneShot<Done> turn;
    waiting_.push_back(turn);
    co_await turn;
}

void TurnGate::leave()
{
    if (waiting_.empty()) {
        occupied_ = false;
        return;
    }
    // The gate stays occupied: it passes from one to the next.
    queue_.async([turn = waiting_.front()] { turn.complete(Done{}); });
    waiting_.pop_front();
}

} // namespace corvandi
