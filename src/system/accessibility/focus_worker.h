#pragma once

#include "ports/system_log.h"
#include "system/accessibility/accessibility_bus.h"
#include "system/accessibility/focus_tracker.h"

#include <atomic>
#include <functional>
#include <memory>

namespace corvandi {

/// What runs on the worker thread: connects to the accessibility bus, tracks the focus while that
/// lives, and connects again when it has come back. The log gets one line for each time that it is out
/// of reach.
///
/// A bus that hangs when it is found is connected to when it goes on. While the bus is away, nothing polls:
/// it is looked for when the program that starts it appears, and when somebody asks for the focus, at most
/// every `searchInterval`.
class FocusWorker : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds searchInterval{5};

    /// Thread: any; then moved to the worker thread, where it is to be destroyed. The others outlive it.
    FocusWorker(FocusCache& cache, SystemLog& log);
    ~FocusWorker() override;

    FocusWorker(const FocusWorker&) = delete;
    FocusWorker& operator=(const FocusWorker&) = delete;

    /// Looks for the bus. Thread: the worker's.
    void start();
    /// Somebody has just read what is known about that process: brings it up to date for the next time.
    /// Returns at once; requests that come faster than they can be served become one. Thread: any.
    void request(pid_t process);
    /// Brings what is known about that process up to date, then runs `done` on the worker's thread; never
    /// if the worker ends before. Thread: any.
    void refresh(pid_t process, std::function<void()> done);

private Q_SLOTS:
    void busLost();

private:
    void serveRequest();
    void inspect(pid_t process);
    void search();
    void greet(const QString& address);
    void connectTo(const QString& address);
    void disconnectFromBus();
    void complain(const QString& reason);

    FocusCache& cache_;
    SystemLog& log_;
    QString connectionName_;
    QString address_;
    std::unique_ptr<AccessibilityBusFinder> finder_;
    std::unique_ptr<BusGreeting> greeting_;
    std::unique_ptr<FocusTracker> tracker_;
    QDeadlineTimer nextSearch_;
    bool complained_ = false;
    /// The process that was asked for and not yet looked at; 0 for none.
    std::atomic<pid_t> requested_ = 0;
};

} // namespace corvandi
