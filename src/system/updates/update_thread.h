#pragma once

#include <QObject>
#include <QThread>

#include <functional>
#include <memory>

namespace corvandi {

/// A thread with an event loop, for what has to wait for disk and network. It is started with the first
/// piece of work.
///
/// Thread: `post` from the owner's thread only. Destroying it does the work that was posted before, and
/// then waits for the thread.
class UpdateThread {
public:
    UpdateThread();
    ~UpdateThread();
    UpdateThread(const UpdateThread&) = delete;
    UpdateThread& operator=(const UpdateThread&) = delete;

    /// Runs `work` there, in the order of posting. On that thread `QThread::isInterruptionRequested()`
    /// tells long work to stop.
    void post(std::function<void()> work);

private:
    QThread thread_;
    /// Lives on the thread.
    std::unique_ptr<QObject> context_ = std::make_unique<QObject>();
};

} // namespace corvandi
