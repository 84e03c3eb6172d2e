#include "engines/shared/result_channel.h"

#include <utility>

namespace corvandi {

void ResultChannel::push(SpeechResult result)
{
    if (hasEnded_)
        return;
    results_.push_back(std::move(result));
    wake();
}

void ResultChannel::end(std::exception_ptr failure)
{
    if (std::exchange(hasEnded_, true))
        return;
    failure_ = failure;
    // Held here: those who are woken may drop the channel.
    const OneShot<Done> ended = ended_;
    wake();
    if (failure)
        ended.fail(std::move(failure));
    else
        ended.complete(Done{});
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

} // namespace corvandi
