#include "engines/shared/utterance_decoder.h"

#include "base/error.h"

#include <algorithm>
#include <utility>

namespace corvandi {

namespace {

/// Short enough to be cancelled in between.
constexpr size_t samplesPerFeed = 1600;

} // namespace

RetryingDecoder::RetryingDecoder(UtteranceDecoder& decoder, Replace replace,
                                 const std::atomic<bool>& isCancelled)
    : decoder_(&decoder)
    , replace_(std::move(replace))
    , isCancelled_(isCancelled)
{
}

void RetryingDecoder::beginStream()
{
    attempt([this] { decoder_->beginStream(); });
}

void RetryingDecoder::beginUtterance()
{
    sound_.clear();
    attempt([this] { decoder_->beginUtterance(); });
    isInUtterance_ = true;
}

void RetryingDecoder::feed(std::span<const int16_t> samples)
{
    attempt([this, samples] { decoder_->feed(samples); });
    sound_.insert(sound_.end(), samples.begin(), samples.end());
}

QString RetryingDecoder::endUtterance()
{
    QString words;
    attempt([this, &words] { words = decoder_->endUtterance(); });
    isInUtterance_ = false;
    return words;
}

void RetryingDecoder::dropUtterance()
{
    isInUtterance_ = false;
    decoder_->dropUtterance();
}

/// `operation` is tried again on the fresh decoder, which by then is where the failed one was before it.
template<class Operation>
void RetryingDecoder::attempt(const Operation& operation)
{
    try {
        operation();
        return;
    } catch (const Error& error) {
        if (isCancelled_ || std::exchange(hasRetried_, true))
            throw;
        startAgain(error.description());
    }
    operation();
}

void RetryingDecoder::startAgain(const QString& failure)
{
    decoder_ = &replace_(failure);
    decoder_->beginStream();
    if (!isInUtterance_)
        return;
    decoder_->beginUtterance();
    const std::span<const int16_t> sound(sound_);
    for (size_t at = 0; at < sound.size() && !isCancelled_; at += samplesPerFeed)
        decoder_->feed(sound.subspan(at, std::min(samplesPerFeed, sound.size() - at)));
}

} // namespace corvandi
