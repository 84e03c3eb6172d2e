#pragma once

#include <QEventLoop>

#include <stop_token>

namespace corvandi {

/// The event loop of a worker's job, which ends when the job is told to stop.
///
/// Thread: the one that created it; the stop may be requested from any.
class StoppableLoop {
public:
    explicit StoppableLoop(const std::stop_token& stop)
        : onStop_(stop, Quit{&loop_})
    {
    }

    /// Runs until `quit` or the stop, even if that came first.
    void run() { loop_.exec(); }
    /// From a callback inside `run`, or ahead of it.
    void quit() { Quit{&loop_}(); }

private:
    struct Quit {
        QEventLoop* loop;
        // Posted: a loop that has not begun would miss the call.
        void operator()() const { QMetaObject::invokeMethod(loop, &QEventLoop::quit, Qt::QueuedConnection); }
    };

    QEventLoop loop_;
    std::stop_callback<Quit> onStop_;
};

} // namespace corvandi
