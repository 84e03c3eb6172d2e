#include "system/files/serial_work_queue.h"

#include <pthread.h>

#include <utility>

namespace corvandi {
namespace {

/// Without the null that ends it.
constexpr qsizetype longestThreadName = 15;

} // namespace

SerialWorkQueue::SerialWorkQueue(const QString& label)
    : thread_([this] { workUntilDone(); })
{
    pthread_setname_np(thread_.native_handle(), label.toUtf8().right(longestThreadName).constData());
}

SerialWorkQueue::~SerialWorkQueue()
{
    {
        const std::lock_guard guard(mutex_);
        isEnding_ = true;
    }
    hasNews_.notify_one();
    thread_.join();
}

void SerialWorkQueue::async(std::function<void()> work)
{
    {
        const std::lock_guard guard(mutex_);
        waiting_.push_back(std::move(work));
    }
    hasNews_.notify_one();
}

void SerialWorkQueue::workUntilDone()
{
    std::unique_lock lock(mutex_);
    while (true) {
        hasNews_.wait(lock, [this] { return isEnding_ || !waiting_.empty(); });
        if (waiting_.empty())
            return;
        {
            const std::function<void()> work = std::move(waiting_.front());
            waiting_.pop_front();
            lock.unlock();
            work();
        }
        lock.lock();
    }
}

} // namespace corvandi
