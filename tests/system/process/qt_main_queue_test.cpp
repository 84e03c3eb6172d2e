#include "system/process/qt_main_queue.h"

#include "support/event_loop.h"

#include <QThread>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace corvandi::testing {
namespace {

using namespace std::chrono_literals;

TEST(QtMainQueue, WorkRunsLaterAndInOrder)
{
    QtMainQueue queue;
    std::vector<int> order;
    queue.async([&] { order.push_back(1); });
    queue.async([&] { order.push_back(2); });
    EXPECT_TRUE(order.empty());
    EXPECT_TRUE(waitUntil([&] { return order.size() == 2; }));
    EXPECT_EQ(order, (std::vector{1, 2}));
}

TEST(QtMainQueue, WorkFromAnotherThreadRunsOnTheMainThread)
{
    QtMainQueue queue;
    QThread* ranOn = nullptr;
    std::thread other([&] { queue.async([&] { ranOn = QThread::currentThread(); }); });
    other.join();
    EXPECT_TRUE(waitUntil([&] { return ranOn != nullptr; }));
    EXPECT_EQ(ranOn, QCoreApplication::instance()->thread());
}

TEST(QtMainQueue, WorkThatStillWaitsIsDroppedWithTheQueue)
{
    bool ran = false;
    {
        QtMainQueue queue;
        queue.async([&] { ran = true; });
    }
    runFor(20ms);
    EXPECT_FALSE(ran);
}

TEST(QtMainQueue, ATimerFiresOnceAndNeverEarly)
{
    QtMainQueue queue;
    int fired = 0;
    const MainQueue::Duration begin = queue.now();
    MainQueue::Duration at{};
    const auto timer = queue.after(15ms, [&] {
        ++fired;
        at = queue.now();
    });
    EXPECT_TRUE(waitUntil([&] { return fired > 0; }));
    runFor(40ms);
    EXPECT_EQ(fired, 1);
    EXPECT_GE(at - begin, 15ms);
}

TEST(QtMainQueue, ADelayOfZeroOrLessIsAsSoonAsPossibleButNotInsideTheCall)
{
    QtMainQueue queue;
    int fired = 0;
    const auto now = queue.after(0ms, [&] { ++fired; });
    const auto past = queue.after(-5ms, [&] { ++fired; });
    EXPECT_EQ(fired, 0);
    EXPECT_TRUE(waitUntil([&] { return fired == 2; }));
}

TEST(QtMainQueue, ADestroyedTimerNeverFires)
{
    QtMainQueue queue;
    bool fired = false;
    auto timer = queue.after(5ms, [&] { fired = true; });
    timer.reset();
    runFor(30ms);
    EXPECT_FALSE(fired);
}

TEST(QtMainQueue, ARepeatingTimerMayDestroyItself)
{
    QtMainQueue queue;
    int ticks = 0;
    std::unique_ptr<Timer> timer;
    const std::vector<int> witness(1000, 7);
    int sum = 0;
    timer = queue.every(2ms, [&, witness] {
        if (++ticks == 3)
            timer.reset();
        // What the work holds is still there after its timer has gone.
        for (const int value : witness)
            sum += value;
    });
    EXPECT_TRUE(waitUntil([&] { return ticks == 3; }));
    runFor(20ms);
    EXPECT_EQ(ticks, 3);
    EXPECT_EQ(sum, 3 * 7 * 1000);
}

} // namespace
} // namespace corvandi::testing
