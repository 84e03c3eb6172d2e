#include "engines/engine_thread.h"

#include <pthread.h>

#include <utility>

namespace corvandi {

void ResultChannel::push(SpeechResult result)
{
    results_.push_back(std::move(result));
    wake();
}

void ResultChannel::end(std::exception_ptr failure)
{
    if (std::exchange(hasEnded_, true))
        return;
    failure_ = std::move(failure);
    wake();
}

QCoro::Task<std::optional<SpeechResult>> ResultChannel::next(std::shared_ptr<ResultChannel> self)
{
    while (self->results_.empty()) {
        if (self->failure_)
            std::rethrow_exception(std::exchange(self->failure_, nullptr));
        if (self->hasEnded_)
            co_return std::nullopt;
        const OneShot<Done> waiter;
        self->waiter_ = waiter;
        co_await waiter;
    }
    std::optional<SpeechResult> result = std::move(self->results_.front());
    self->results_.pop_front();
    co_return result;
}

void ResultChannel::wake()
{
    if (const auto waiter = std::exchange(waiter_, std::nullopt))
        waiter->complete(Done{});
}

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
