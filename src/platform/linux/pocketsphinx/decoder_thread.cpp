#include "platform/linux/pocketsphinx/decoder_thread.h"

#include <pthread.h>

namespace corvandi {

DecoderThread::DecoderThread()
    : thread_([this] { run(); })
{
    // For those who look at the process from outside; at most 15 characters.
    pthread_setname_np(thread_.native_handle(), "speech decoder");
}

DecoderThread::~DecoderThread()
{
    {
        const std::lock_guard guard(mutex_);
        isEnding_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void DecoderThread::post(Job job)
{
    {
        const std::lock_guard guard(mutex_);
        jobs_.push_back(std::move(job));
    }
    changed_.notify_one();
}

void DecoderThread::run()
{
    std::unique_lock guard(mutex_);
    while (true) {
        changed_.wait(guard, [this] { return isEnding_ || !jobs_.empty(); });
        if (isEnding_)
            return;
        const Job job = std::move(jobs_.front());
        jobs_.pop_front();
        guard.unlock();
        job();
        guard.lock();
    }
}

} // namespace corvandi
