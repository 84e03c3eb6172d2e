#include "base/worker.h"

#include "support/virtual_queue.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pthread.h>

#include <array>
#include <atomic>
#include <barrier>
#include <filesystem>
#include <future>
#include <latch>
#include <thread>
#include <vector>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

using AtEnd = Worker::AtEnd;

constexpr auto noPatience = 0ms;

const QString name = QStringLiteral("a worker");

/// Keeps a job waiting, whatever it is told.
class Gate {
public:
    void open() { promise_.set_value(); }
    [[nodiscard]] Worker::Job job() const
    {
        return [opened = opened_](const std::stop_token&) { opened.wait(); };
    }

private:
    std::promise<void> promise_;
    std::shared_future<void> opened_ = promise_.get_future().share();
};

/// Waits as a job should that waits for something else: until it is told to stop.
void waitForStop(const std::stop_token& stop)
{
    std::latch told(1);
    const std::stop_callback onStop(stop, [&told] { told.count_down(); });
    told.wait();
}

/// Tells when the thread that has touched it is gone.
struct ThreadEnd {
    std::shared_ptr<std::promise<void>> reached;
    ~ThreadEnd()
    {
        if (reached)
            reached->set_value();
    }
};
thread_local ThreadEnd threadEnd;

std::ptrdiff_t threadCount()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

TEST(Life, GuardedCallsDoNothingOnceTheObjectHasGone)
{
    std::vector<int> received;
    std::function<void(int)> call;
    {
        const Life life;
        call = life.guard([&received](int value) { received.push_back(value); });
        call(1);
    }
    call(2);
    EXPECT_THAT(received, ElementsAre(1));
}

TEST(Life, CodeThatGoesOnAfterTheObjectNoticesThatItHasGone)
{
    auto life = std::make_unique<Life>();
    const auto watch = life->watch();
    EXPECT_FALSE(watch.expired());
    life.reset();
    EXPECT_TRUE(watch.expired());
}

class MailboxTest : public ::testing::Test {
protected:
    testing::VirtualQueue queue;
    std::vector<int> received;
};

TEST_F(MailboxTest, WorkFromAnotherThreadRunsOnTheMainThreadInOrder)
{
    const Mailbox mailbox(queue);
    std::thread::id ranOn;
    std::jthread([&, address = mailbox.address()] {
        for (int i = 0; i < 3; ++i)
            address.post([&, i] { received.push_back(i); });
        address.post([&] { ranOn = std::this_thread::get_id(); });
    }).join();
    EXPECT_TRUE(received.empty());
    queue.drain();
    EXPECT_THAT(received, ElementsAre(0, 1, 2));
    EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST_F(MailboxTest, WhatHasArrivedIsDroppedWithTheMailbox)
{
    auto mailbox = std::make_unique<Mailbox>(queue);
    mailbox->address().post([&] { received.push_back(1); });
    mailbox.reset();
    queue.drain();
    EXPECT_TRUE(received.empty());
}

TEST_F(MailboxTest, WorkMayDestroyTheMailboxAndSoDropWhatFollows)
{
    auto mailbox = std::make_unique<Mailbox>(queue);
    const Mailbox::Address address = mailbox->address();
    address.post([&] { mailbox.reset(); });
    address.post([&] { received.push_back(2); });
    queue.drain();
    EXPECT_FALSE(mailbox);
    EXPECT_TRUE(received.empty());
}

TEST(Mailbox, AnAddressOutlivesTheMailboxAndTheQueue)
{
    auto queue = std::make_unique<testing::VirtualQueue>();
    auto mailbox = std::make_unique<Mailbox>(*queue);
    const Mailbox::Address address = mailbox->address();
    mailbox.reset();
    queue.reset();
    address.post([] { ADD_FAILURE(); });
}

TEST_F(MailboxTest, MayGoWhileOthersPost)
{
    auto mailbox = std::make_unique<Mailbox>(queue);
    std::atomic<bool> isOver = false;
    std::latch begun(2);
    const auto post = [&, address = mailbox->address()] {
        address.post([&] { received.push_back(1); });
        begun.count_down();
        while (!isOver)
            address.post([&] { received.push_back(2); });
    };
    std::jthread one(post);
    std::jthread other(post);
    begun.wait();
    mailbox.reset();
    isOver = true;
    one.join();
    other.join();
    queue.drain();
    EXPECT_TRUE(received.empty());
}

TEST(Worker, WorksInOrderAndOneAtATime)
{
    std::vector<int> done;
    {
        Worker worker(name, AtEnd::finish);
        for (int i = 0; i < 1000; ++i)
            worker.post([&done, i](const std::stop_token&) { done.push_back(i); });
    }
    ASSERT_EQ(done.size(), 1000U);
    EXPECT_TRUE(std::ranges::is_sorted(done));
}

TEST(Worker, TakesJobsFromManyThreads)
{
    int done = 0;
    {
        Worker worker(name, AtEnd::finish);
        std::vector<std::jthread> posters;
        for (int i = 0; i < 4; ++i) {
            posters.emplace_back([&] {
                for (int k = 0; k < 500; ++k)
                    worker.post([&done](const std::stop_token&) { ++done; });
            });
        }
        posters.clear();
    }
    EXPECT_EQ(done, 2000);
}

TEST(Worker, RunsUpToSoManyJobsAtATimeAndNoMore)
{
    constexpr int threads = 3;
    std::barrier allThere(threads);
    std::atomic<int> running = 0;
    std::atomic<bool> hasOverrun = false;
    {
        Worker worker(name, AtEnd::finish, 60s, threads);
        for (int i = 0; i < 10 * threads; ++i) {
            worker.post([&](const std::stop_token&) {
                hasOverrun = hasOverrun || ++running > threads;
                allThere.arrive_and_wait();
                --running;
                allThere.arrive_and_wait();
            });
        }
    }
    EXPECT_FALSE(hasOverrun);
}

TEST(Worker, HasNoThreadBeforeTheFirstJob)
{
    const auto before = threadCount();
    const Worker worker(name, AtEnd::stop);
    EXPECT_LE(threadCount(), before);
}

TEST(Worker, ItsThreadEndsWhenNoJobWaitsAndComesBackWithTheNext)
{
    Worker worker(name, AtEnd::finish);
    for (int i = 0; i < 3; ++i) {
        const auto reached = std::make_shared<std::promise<void>>();
        worker.post([reached](const std::stop_token&) { threadEnd.reached = reached; });
        reached->get_future().wait();
    }
    EXPECT_TRUE(worker.end());
}

TEST(Worker, ItsThreadHasTheEndOfItsName)
{
    std::array<char, 16> found{};
    {
        Worker worker(QStringLiteral("io.corvandi.Corvandi.store"), AtEnd::finish);
        worker.post(
            [&](const std::stop_token&) { pthread_getname_np(pthread_self(), found.data(), found.size()); });
    }
    EXPECT_STREQ(found.data(), ".Corvandi.store");
}

TEST(Worker, DropsWhatAJobHoldsBeforeTheNext)
{
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    bool wasDropped = false;
    {
        Worker worker(name, AtEnd::finish);
        worker.post([held = std::move(held)](const std::stop_token&) {});
        worker.post([&](const std::stop_token&) { wasDropped = watched.expired(); });
    }
    EXPECT_TRUE(wasDropped);
}

TEST(Worker, AJobMayPostAnother)
{
    std::promise<void> done;
    Worker worker(name, AtEnd::finish);
    worker.post([&](const std::stop_token&) { worker.post([&](const auto&) { done.set_value(); }); });
    done.get_future().wait();
}

TEST(Worker, FinishingDoesAllJobsAndTellsNoneToStop)
{
    Gate gate;
    std::atomic<int> done = 0;
    Worker worker(name, AtEnd::finish);
    worker.post(gate.job());
    for (int i = 0; i < 10; ++i)
        worker.post([&done](const std::stop_token& stop) { done += stop.stop_requested() ? 0 : 1; });
    EXPECT_EQ(done, 0);
    const std::jthread opener([&gate] { gate.open(); });
    EXPECT_TRUE(worker.end());
    EXPECT_EQ(done, 10);
}

TEST(Worker, StoppingTellsTheRunningJobAndDropsTheOthers)
{
    std::promise<void> begun;
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    Worker worker(name, AtEnd::stop);
    worker.post([&begun](const std::stop_token& stop) {
        begun.set_value();
        waitForStop(stop);
    });
    worker.post([held = std::move(held)](const std::stop_token&) { ADD_FAILURE(); });
    begun.get_future().wait();
    EXPECT_TRUE(worker.end());
    EXPECT_TRUE(watched.expired());
}

TEST(Worker, AStopEndsTheEventLoopOfAJob)
{
    int argumentCount = 0;
    const QCoreApplication application(argumentCount, nullptr);
    std::promise<void> begun;
    Worker worker(name, AtEnd::stop);
    worker.post([&begun](const std::stop_token& stop) {
        QEventLoop loop;
        // Not by a posted event: the thread sanitizer does not know how Qt hands those over.
        const std::stop_callback onStop(stop, [&loop] { loop.wakeUp(); });
        begun.set_value();
        while (!stop.stop_requested())
            loop.processEvents(QEventLoop::WaitForMoreEvents);
    });
    begun.get_future().wait();
    EXPECT_TRUE(worker.end());
}

TEST(Worker, IgnoresWhatIsPostedAfterTheEnd)
{
    Worker worker(name, AtEnd::finish);
    EXPECT_TRUE(worker.end());
    worker.post([](const std::stop_token&) { ADD_FAILURE(); });
    EXPECT_TRUE(worker.end());
}

TEST(Worker, AJobThatDoesNotListenIsLeftBehindAndGoesOnByItself)
{
    Gate gate;
    std::promise<void> begun;
    const auto reached = std::make_shared<std::promise<void>>();
    auto worker = std::make_unique<Worker>(name, AtEnd::stop, noPatience);
    worker->post([wait = gate.job(), reached, &begun](const std::stop_token& stop) {
        threadEnd.reached = reached;
        begun.set_value();
        wait(stop);
    });
    begun.get_future().wait();
    EXPECT_FALSE(worker->end());
    EXPECT_FALSE(worker->end());
    worker.reset();
    gate.open();
    reached->get_future().wait();
}

TEST(Worker, JobsToFinishThatTakeTooLongGoOnWithoutTheWorker)
{
    Gate gate;
    const auto last = std::make_shared<std::promise<void>>();
    {
        Worker worker(name, AtEnd::finish, noPatience);
        worker.post(gate.job());
        worker.post([last](const std::stop_token&) { threadEnd.reached = last; });
        EXPECT_FALSE(worker.end());
    }
    gate.open();
    last->get_future().wait();
}

class ErrandTest : public ::testing::Test {
protected:
    using IntErrand = Errand<int>;

    [[nodiscard]] std::unique_ptr<Registration> send(Worker& worker, IntErrand::Work work)
    {
        return std::make_unique<IntErrand>(worker, queue, std::move(work),
                                           [this](int result) { received.push_back(result); });
    }

    testing::VirtualQueue queue;
    std::vector<int> received;
};

TEST_F(ErrandTest, BringsTheResultToTheMainThread)
{
    Worker worker(name, AtEnd::finish);
    const auto errand = send(worker, [](const std::stop_token&) { return 7; });
    EXPECT_TRUE(worker.end());
    EXPECT_TRUE(received.empty());
    queue.drain();
    EXPECT_THAT(received, ElementsAre(7));
}

TEST_F(ErrandTest, DestroyingItDropsAResultThatIsUnderWay)
{
    Worker worker(name, AtEnd::finish);
    auto errand = send(worker, [](const std::stop_token&) { return 7; });
    EXPECT_TRUE(worker.end());
    errand.reset();
    queue.drain();
    EXPECT_TRUE(received.empty());
}

TEST_F(ErrandTest, DestroyingItStopsItsJobAndNoOther)
{
    std::promise<void> begun;
    Worker worker(name, AtEnd::finish);
    auto errand = send(worker, [&begun](const std::stop_token& stop) {
        begun.set_value();
        waitForStop(stop);
        return 1;
    });
    const auto next =
        send(worker, [](const std::stop_token& stop) { return stop.stop_requested() ? -2 : 2; });
    begun.get_future().wait();
    errand.reset();
    EXPECT_TRUE(worker.end());
    queue.drain();
    EXPECT_THAT(received, ElementsAre(2));
}

TEST_F(ErrandTest, DestroyingItBeforeItsTurnDropsItsJob)
{
    Gate gate;
    Worker worker(name, AtEnd::finish);
    worker.post(gate.job());
    auto errand = send(worker, [](const std::stop_token&) {
        ADD_FAILURE();
        return 1;
    });
    errand.reset();
    gate.open();
    EXPECT_TRUE(worker.end());
}

TEST_F(ErrandTest, TheEndOfTheWorkerStopsItAndItsResultMeansNothing)
{
    std::promise<void> begun;
    auto worker = std::make_unique<Worker>(name, AtEnd::stop);
    const auto errand = send(*worker, [&begun](const std::stop_token& stop) {
        begun.set_value();
        waitForStop(stop);
        return 1;
    });
    begun.get_future().wait();
    EXPECT_TRUE(worker->end());
    worker.reset();
    queue.drain();
    EXPECT_TRUE(received.empty());
}

TEST_F(ErrandTest, WhoeverGetsTheResultMayDestroyIt)
{
    Worker worker(name, AtEnd::finish);
    std::unique_ptr<Registration> errand;
    auto held = std::make_shared<int>(1);
    errand = std::make_unique<IntErrand>(
        worker, queue, [](const std::stop_token&) { return 7; },
        [&, held](int result) {
            errand.reset();
            received.push_back(result * *held);
        });
    EXPECT_TRUE(worker.end());
    queue.drain();
    EXPECT_FALSE(errand);
    EXPECT_THAT(received, ElementsAre(7));
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(ErrandTest, WhatTheReceiverHoldsGoesOnTheMainThread)
{
    std::thread::id droppedOn;
    auto held = std::shared_ptr<void>(nullptr, [&](void*) { droppedOn = std::this_thread::get_id(); });
    Gate gate;
    Worker worker(name, AtEnd::finish);
    worker.post(gate.job());
    auto errand = std::make_unique<IntErrand>(
        worker, queue, [](const std::stop_token&) { return 7; }, [held = std::move(held)](int) {});
    errand.reset();
    EXPECT_EQ(droppedOn, std::this_thread::get_id());
    gate.open();
}

TEST_F(ErrandTest, ThousandsThatAreGivenUpAllComeToTheirEnd)
{
    {
        Worker worker(name, AtEnd::finish, 60s, 4);
        for (int i = 0; i < 2000; ++i) {
            const auto errand = send(worker, [](const std::stop_token& stop) {
                waitForStop(stop);
                return 1;
            });
        }
        EXPECT_TRUE(worker.end());
    }
    queue.drain();
    EXPECT_TRUE(received.empty());
}

} // namespace
} // namespace corvandi
