#pragma once

#include "ports/work_queue.h"

#include <QString>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace corvandi {

/// A work queue with one thread of its own, which sleeps while there is nothing to do.
///
/// Handing over never waits for work. Work that hangs, on a disk for instance, keeps all that follows
/// waiting in memory, and keeps the destructor: what was handed over is not dropped. A process that is
/// killed meanwhile loses the work that waits.
class SerialWorkQueue : public WorkQueue {
public:
    /// The end of `label` names the thread, as far as the system's 15 characters go.
    explicit SerialWorkQueue(const QString& label);
    ~SerialWorkQueue() override;
    SerialWorkQueue(const SerialWorkQueue&) = delete;
    SerialWorkQueue& operator=(const SerialWorkQueue&) = delete;

    void async(std::function<void()> work) override;

private:
    void workUntilDone();

    std::mutex mutex_;
    std::condition_variable hasNews_;
    std::deque<std::function<void()>> waiting_;
    bool isEnding_ = false;
    /// Last, so that it starts when all else is there.
    std::thread thread_;
};

} // namespace corvandi
