#pragma once

#include "base/main_queue.h"

#include <map>
#include <mutex>
#include <utility>

namespace corvandi::testing {

/// A main queue on virtual time: nothing sleeps, work that is due at the same moment runs in the order
/// in which it was asked for. `async` may come from other threads; the test drives everything else.
class VirtualQueue : public MainQueue {
public:
    VirtualQueue();
    ~VirtualQueue() override;

    [[nodiscard]] Duration now() const override { return now_; }
    void async(std::function<void()> work) override;
    [[nodiscard]] std::unique_ptr<Timer> after(Duration delay, std::function<void()> work) override;
    [[nodiscard]] std::unique_ptr<Timer> every(Duration interval, std::function<void()> work) override;

    /// Lets `time` pass and runs everything that becomes due, up to and including that moment.
    void advance(Duration time);
    /// Runs everything that is due now, and what that makes due now, until nothing is.
    void drain() { advance(Duration::zero()); }
    /// Time passes while something runs and nothing else gets its turn.
    void skip(Duration time) { now_ += time; }
    /// The number of timers that have not fired or been cancelled.
    [[nodiscard]] size_t timerCount() const;

private:
    class VirtualTimer;
    struct Agenda;

    std::shared_ptr<Agenda> agenda_;
    Duration now_{};
};

} // namespace corvandi::testing
