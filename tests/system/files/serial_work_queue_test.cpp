#include "system/files/serial_work_queue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pthread.h>

#include <array>
#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace corvandi {
namespace {

const QString label = QStringLiteral("io.corvandi.Corvandi.store");

TEST(SerialWorkQueue, WorksInOrderAndOneAtATime)
{
    std::vector<int> done;
    std::atomic<int> running = 0;
    std::atomic<bool> hasOverlapped = false;
    {
        SerialWorkQueue queue(label);
        for (int i = 0; i < 1000; ++i) {
            queue.async([&, i] {
                hasOverlapped = hasOverlapped || ++running > 1;
                done.push_back(i);
                --running;
            });
        }
    }
    ASSERT_EQ(done.size(), 1000U);
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(done[static_cast<size_t>(i)], i);
    EXPECT_FALSE(hasOverlapped);
}

TEST(SerialWorkQueue, DestructionWaitsForAllWork)
{
    std::promise<void> gate;
    std::atomic<int> done = 0;
    std::thread opener;
    {
        SerialWorkQueue queue(label);
        queue.async([&gate] { gate.get_future().wait(); });
        for (int i = 0; i < 10; ++i)
            queue.async([&done] { ++done; });
        EXPECT_EQ(done, 0);
        opener = std::thread([&gate] { gate.set_value(); });
    }
    EXPECT_EQ(done, 10);
    opener.join();
}

TEST(SerialWorkQueue, HandingOverDoesNotWaitForWorkThatHangs)
{
    std::promise<void> gate;
    std::promise<void> last;
    SerialWorkQueue queue(label);
    queue.async([&gate] { gate.get_future().wait(); });
    queue.async([&last] { last.set_value(); });
    gate.set_value();
    last.get_future().wait();
}

TEST(SerialWorkQueue, WorksOnANamedThreadOfItsOwn)
{
    std::thread::id worker;
    std::array<char, 16> name{};
    {
        SerialWorkQueue queue(label);
        queue.async([&] {
            worker = std::this_thread::get_id();
            pthread_getname_np(pthread_self(), name.data(), name.size());
        });
    }
    EXPECT_NE(worker, std::thread::id());
    EXPECT_NE(worker, std::this_thread::get_id());
    EXPECT_STREQ(name.data(), ".Corvandi.store");
}

TEST(SerialWorkQueue, DropsWhatWorkHoldsOnceItIsDone)
{
    SerialWorkQueue queue(label);
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    std::promise<void> next;
    queue.async([held = std::move(held)] {});
    queue.async([&next] { next.set_value(); });
    next.get_future().wait();
    EXPECT_TRUE(watched.expired());
}

TEST(SerialWorkQueue, WithoutWorkItJustEnds)
{
    EXPECT_NO_THROW(SerialWorkQueue{label});
}

} // namespace
} // namespace corvandi
