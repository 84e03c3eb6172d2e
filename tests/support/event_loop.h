#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace corvandi::testing {

/// Runs Qt's event loop until `condition` holds; false when it does not within `limit`. For tests
/// against real facilities, which answer when they do.
template<class Condition>
[[nodiscard]] bool waitUntil(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(5))
{
    const QDeadlineTimer deadline(limit);
    QTimer wakeUp;
    wakeUp.start(std::chrono::milliseconds(2));
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

/// Runs Qt's event loop for `time`: to show that something does not happen.
inline void runFor(std::chrono::milliseconds time)
{
    (void)waitUntil([] { return false; }, time);
}

} // namespace corvandi::testing
