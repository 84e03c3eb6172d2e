#include "system/files/serial_work_queue.h"

#include "support/recording_log.h"

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

class SerialWorkQueueTest : public ::testing::Test {
protected:
    testing::RecordingLog log;
};

TEST_F(SerialWorkQueueTest, WorksInOrderAndOneAtATime)
{
    std::vector<int> done;
    std::atomic<int> running = 0;
    std::atomic<bool> hasOverlapped = false;
    {
        SerialWorkQueue queue(label, log);
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

TEST_F(SerialWorkQueueTest, DestructionWaitsForAllWork)
{
    std::promise<void> gate;
    std::atomic<int> done = 0;
    std::thread opener;
    {
        SerialWorkQueue queue(label, log);
        queue.async([&gate] { gate.get_future().wait(); });
        for (int i = 0; i < 10; ++i)
            queue.async([&done] { ++done; });
        EXPECT_EQ(done, 0);
        opener = std::thread([&gate] { gate.set_value(); });
    }
    EXPECT_EQ(done, 10);
    opener.join();
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(SerialWorkQueueTest, WorkThatHangsAtTheEndIsLoggedAndGoesOnWithWhatItUses)
{
    auto used = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = used;
    const auto gate = std::make_shared<std::promise<void>>();
    const auto done = std::make_shared<std::promise<bool>>();
    {
        SerialWorkQueue queue(label, log, std::move(used), std::chrono::milliseconds(0));
        queue.async([gate] { gate->get_future().wait(); });
        queue.async([watched, done] { done->set_value(!watched.expired()); });
    }
    EXPECT_TRUE(log.contains(QStringLiteral("the last changes take too long to write")));
    gate->set_value();
    EXPECT_TRUE(done->get_future().get());
}

TEST_F(SerialWorkQueueTest, HandingOverDoesNotWaitForWorkThatHangs)
{
    std::promise<void> gate;
    std::promise<void> last;
    SerialWorkQueue queue(label, log);
    queue.async([&gate] { gate.get_future().wait(); });
    queue.async([&last] { last.set_value(); });
    gate.set_value();
    last.get_future().wait();
}

TEST_F(SerialWorkQueueTest, WorksOnANamedThreadOfItsOwn)
{
    std::thread::id worker;
    std::array<char, 16> name{};
    {
        SerialWorkQueue queue(label, log);
        queue.async([&] {
            worker = std::this_thread::get_id();
            pthread_getname_np(pthread_self(), name.data(), name.size());
        });
    }
    EXPECT_NE(worker, std::thread::id());
    EXPECT_NE(worker, std::this_thread::get_id());
    EXPECT_STREQ(name.data(), ".Corvandi.store");
}

TEST_F(SerialWorkQueueTest, DropsWhatWorkHoldsOnceItIsDone)
{
    SerialWorkQueue queue(label, log);
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    std::promise<void> next;
    queue.async([held = std::move(held)] {});
    queue.async([&next] { next.set_value(); });
    next.get_future().wait();
    EXPECT_TRUE(watched.expired());
}

TEST_F(SerialWorkQueueTest, WithoutWorkItJustEnds)
{
    EXPECT_NO_THROW((SerialWorkQueue{label, log}));
}

} // namespace
} // namespace corvandi
