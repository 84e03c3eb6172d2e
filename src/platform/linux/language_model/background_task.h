#pragma once

#include "base/main_queue.h"

#include <QThreadPool>

#include <functional>
#include <memory>
#include <stop_token>
#include <utility>

namespace corvandi {

/// Work on a thread of a pool, whose result goes to the main thread. Destroying the task tells the work to
/// stop, without waiting for it, and the result is dropped.
///
/// Thread: main thread only, except the work itself.
template<class Result>
class BackgroundTask {
public:
    using Work = std::function<Result(const std::stop_token&)>;
    /// Runs once, later, on the main thread; it may destroy the task.
    using Done = std::function<void(Result)>;

    /// `queue` outlives the pool.
    BackgroundTask(QThreadPool& pool, MainQueue& queue, Work work, Done done)
        : done_(std::make_shared<Done>(std::move(done)))
    {
        // The work holds `done` weakly, so that what it has captured goes on the main thread.
        pool.start([&queue, work = std::move(work), stop = stop_.get_token(), done = std::weak_ptr(done_)] {
            if (stop.stop_requested())
                return;
            auto result = std::make_shared<Result>(work(stop));
            queue.async([done, result] {
                if (const auto call = done.lock())
                    (*call)(std::move(*result));
            });
        });
    }
    ~BackgroundTask() { stop_.request_stop(); }
    BackgroundTask(const BackgroundTask&) = delete;
    BackgroundTask& operator=(const BackgroundTask&) = delete;

private:
    std::stop_source stop_;
    std::shared_ptr<Done> done_;
};

} // namespace corvandi
