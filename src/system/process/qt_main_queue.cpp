#include "system/process/qt_main_queue.h"

#include <QTimer>

#include <algorithm>
#include <ctime>

namespace corvandi {
namespace {

enum class Repeat { once, forever };

class QtTimer : public Timer {
public:
    QtTimer(MainQueue::Duration interval, Repeat repeat, std::function<void()> work)
    {
        using std::chrono::ceil;
        using std::chrono::milliseconds;
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.setSingleShot(repeat == Repeat::once);
        // Qt keeps the work alive while it runs, so that it may destroy its own timer.
        QObject::connect(&timer_, &QTimer::timeout, &timer_, std::move(work));
        timer_.start(std::max(ceil<milliseconds>(interval), milliseconds(0)));
    }

private:
    QTimer timer_;
};

} // namespace

MainQueue::Duration QtMainQueue::now() const
{
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

void QtMainQueue::async(std::function<void()> work)
{
    QMetaObject::invokeMethod(&context_, std::move(work), Qt::QueuedConnection);
}

std::unique_ptr<Timer> QtMainQueue::after(Duration delay, std::function<void()> work)
{
    return std::make_unique<QtTimer>(delay, Repeat::once, std::move(work));
}

std::unique_ptr<Timer> QtMainQueue::every(Duration interval, std::function<void()> work)
{
    return std::make_unique<QtTimer>(interval, Repeat::forever, std::move(work));
}

} // namespace corvandi
