#include "support/virtual_queue.h"

#include "base/awaitables.h"

#include <QCoroTask>

#include <gtest/gtest.h>

#include <vector>

namespace corvandi::testing {
namespace {

using namespace std::chrono_literals;

TEST(VirtualQueue, RunsWorkInTheOrderInWhichItBecomesDue)
{
    VirtualQueue queue;
    std::vector<int> order;
    const auto late = queue.after(20ms, [&] { order.push_back(3); });
    const auto early = queue.after(10ms, [&] { order.push_back(2); });
    queue.async([&] { order.push_back(1); });
    queue.advance(20ms);
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

TEST(VirtualQueue, NeverRunsWorkInsideTheCallThatAskedForIt)
{
    VirtualQueue queue;
    bool ran = false;
    queue.async([&] { ran = true; });
    const auto timer = queue.after(0ms, [&] { ran = true; });
    EXPECT_FALSE(ran);
}

TEST(VirtualQueue, ADestroyedTimerNeverFires)
{
    VirtualQueue queue;
    bool fired = false;
    auto timer = queue.after(1ms, [&] { fired = true; });
    timer.reset();
    queue.advance(1s);
    EXPECT_FALSE(fired);
    EXPECT_EQ(queue.timerCount(), 0U);
}

TEST(VirtualQueue, ARepeatingTimerMayDestroyItself)
{
    VirtualQueue queue;
    int ticks = 0;
    std::unique_ptr<Timer> timer;
    timer = queue.every(10ms, [&] {
        if (++ticks == 3)
            timer.reset();
    });
    queue.advance(1s);
    EXPECT_EQ(ticks, 3);
}

TEST(VirtualQueue, TimeStandsAtTheMomentOfEachCallback)
{
    VirtualQueue queue;
    std::vector<MainQueue::Duration> moments;
    const auto timer = queue.every(200ms, [&] { moments.push_back(queue.now()); });
    queue.advance(500ms);
    EXPECT_EQ(moments, (std::vector<MainQueue::Duration>{200ms, 400ms}));
    EXPECT_EQ(queue.now(), 500ms);
}

QCoro::Task<> sleepTwice(MainQueue& queue, std::vector<MainQueue::Duration>& moments)
{
    co_await sleepFor(queue, 5ms);
    moments.push_back(queue.now());
    co_await nextTurn(queue);
    co_await sleepFor(queue, 7ms);
    moments.push_back(queue.now());
}

TEST(SleepFor, ResumesTheCoroutineAfterTheDelay)
{
    VirtualQueue queue;
    std::vector<MainQueue::Duration> moments;
    const auto task = sleepTwice(queue, moments);
    queue.advance(12ms);
    EXPECT_EQ(moments, (std::vector<MainQueue::Duration>{5ms, 12ms}));
}

} // namespace
} // namespace corvandi::testing
