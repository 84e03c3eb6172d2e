#pragma once

#include "base/main_queue.h"

#include <QObject>

namespace corvandi {

/// The main queue on Qt's event loop. Create it on the main thread, after the application object; it
/// needs a running event loop to deliver.
///
/// Time is the kernel's boot-time clock, which goes on while the machine is suspended. Timers have the
/// event loop's resolution of one millisecond and are never early.
class QtMainQueue : public MainQueue {
public:
    [[nodiscard]] Duration now() const override;
    void async(std::function<void()> work) override;
    [[nodiscard]] std::unique_ptr<Timer> after(Duration delay, std::function<void()> work) override;
    [[nodiscard]] std::unique_ptr<Timer> every(Duration interval, std::function<void()> work) override;

private:
    /// Lives on the main thread; what is posted to it is dropped when it goes.
    QObject context_;
};

} // namespace corvandi
