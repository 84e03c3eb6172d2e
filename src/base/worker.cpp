#include "base/worker.h"

#include <pthread.h>

#include <condition_variable>
#include <deque>
#include <list>
#include <mutex>
#include <thread>

namespace corvandi {

struct Mailbox::State {
    /// Held while posting, so that the queue does not go meanwhile.
    std::mutex mutex;
    /// Null when the mailbox has gone. Written on the main thread only.
    MainQueue* queue = nullptr;
};

Mailbox::Mailbox(MainQueue& queue)
{
    address_.state_ = std::make_shared<State>();
    address_.state_->queue = &queue;
}

Mailbox::~Mailbox()
{
    const std::lock_guard guard(address_.state_->mutex);
    address_.state_->queue = nullptr;
}

void Mailbox::Address::post(std::function<void()> work) const
{
    const std::lock_guard guard(state_->mutex);
    if (!state_->queue)
        return;
    state_->queue->async([state = state_, work = std::move(work)] {
        if (state->queue)
            work();
    });
}

/// What the threads share with the worker, and have to themselves when they are left behind.
struct Worker::State {
    /// Without the null that ends it.
    static constexpr qsizetype longestThreadName = 15;

    QByteArray threadName;
    std::mutex mutex;
    std::deque<Job> waiting;
    /// Those that have a job, or are about to take one.
    std::list<std::jthread> threads;
    std::condition_variable threadEnded;
    /// Each thread that ends joins the one before, and the worker's end joins the last.
    std::jthread lastEnded;
    std::stop_source stop;
    bool isClosed = false;

    void work(std::list<std::jthread>::iterator self)
    {
        pthread_setname_np(pthread_self(), threadName.constData());
        std::unique_lock lock(mutex);
        while (!waiting.empty()) {
            {
                const Job job = std::move(waiting.front());
                waiting.pop_front();
                lock.unlock();
                job(stop.get_token());
            }
            lock.lock();
        }
        const std::jthread previous = std::exchange(lastEnded, std::move(*self));
        threads.erase(self);
        threadEnded.notify_all();
        lock.unlock();
    }
};

Worker::Worker(const QString& name, AtEnd atEnd, std::chrono::milliseconds patience, size_t threads)
    : state_(std::make_shared<State>())
    , atEnd_(atEnd)
    , patience_(patience)
    , mostThreads_(threads)
{
    state_->threadName = name.toUtf8().right(State::longestThreadName);
}

void Worker::post(Job job)
{
    const std::lock_guard guard(state_->mutex);
    if (state_->isClosed)
        return;
    // All that there are are busy: a thread without a job has gone.
    if (state_->threads.size() < mostThreads_) {
        std::list<std::jthread> fresh(1);
        fresh.front() = std::jthread([state = state_, self = fresh.begin()] { state->work(self); });
        state_->threads.splice(state_->threads.end(), fresh);
    }
    state_->waiting.push_back(std::move(job));
}

bool Worker::end()
{
    std::deque<Job> dropped;
    std::unique_lock lock(state_->mutex);
    if (std::exchange(state_->isClosed, true))
        return state_->threads.empty();
    if (atEnd_ == AtEnd::stop) {
        dropped.swap(state_->waiting);
        // Without the lock: what a stop wakes and what a job holds may post.
        lock.unlock();
        state_->stop.request_stop();
        dropped.clear();
        lock.lock();
    }
    const bool haveEnded =
        state_->threadEnded.wait_for(lock, patience_, [this] { return state_->threads.empty(); });
    for (std::jthread& leftBehind : state_->threads)
        leftBehind.detach();
    const std::jthread last = std::move(state_->lastEnded);
    lock.unlock();
    return haveEnded;
}

} // namespace corvandi
