#include "engines/shared/utterance_splitter.h"

#include <algorithm>
#include <numeric>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds frameLength = 20ms;

constexpr size_t framesIn(std::chrono::milliseconds time)
{
    return static_cast<size_t>(time / frameLength);
}

/// Before the detector is sure of a voice, a soft first sound has gone by.
constexpr size_t preRollSamples = framesIn(300ms) * UtteranceSplitter::samplesPerFrame;
/// Shorter ones are clicks.
constexpr size_t onsetFrames = framesIn(40ms);
/// Longer than a stop consonant or a hesitation, short enough to be over before the key is released.
constexpr size_t pauseFrames = framesIn(400ms);
constexpr size_t longUtteranceFrames = framesIn(20s);
/// When no moment turns up that is as quiet as the quietest of the last ones.
constexpr size_t longestUtteranceFrames = framesIn(22s);
/// Long enough to hold several gaps between words.
constexpr size_t levelHistoryFrames = framesIn(2s);

double energy(std::span<const int16_t> frame)
{
    return std::accumulate(frame.begin(), frame.end(), 0.0, [](double sum, int16_t sample) {
        return sum + static_cast<double>(sample) * sample;
    });
}

} // namespace

UtteranceSplitter::UtteranceSplitter(UtteranceSink& sink, HearsVoice hearsVoice)
    : sink_(sink)
    , hearsVoice_(std::move(hearsVoice))
{
}

void UtteranceSplitter::feed(std::span<const int16_t> samples)
{
    incomplete_.insert(incomplete_.end(), samples.begin(), samples.end());
    const Frame available(incomplete_);
    size_t taken = 0;
    for (; taken + samplesPerFrame <= available.size(); taken += samplesPerFrame)
        takeFrame(available.subspan(taken, samplesPerFrame));
    incomplete_.erase(incomplete_.begin(), incomplete_.begin() + static_cast<ptrdiff_t>(taken));
}

void UtteranceSplitter::finish()
{
    if (isSpeaking_) {
        sink_.sound(incomplete_);
        end();
    }
    incomplete_.clear();
}

void UtteranceSplitter::takeFrame(Frame frame)
{
    const bool isVoice = hearsVoice_(frame);
    if (isSpeaking_)
        speak(frame, isVoice);
    else
        listen(frame, isVoice);
}

void UtteranceSplitter::listen(Frame frame, bool isVoice)
{
    preRoll_.insert(preRoll_.end(), frame.begin(), frame.end());
    if (preRoll_.size() > preRollSamples)
        preRoll_.erase(preRoll_.begin(), preRoll_.end() - static_cast<ptrdiff_t>(preRollSamples));
    if (!isVoice) {
        quietFrames_ += voicedFrames_ + 1;
        voicedFrames_ = 0;
    } else if (++voicedFrames_ >= onsetFrames) {
        begin();
    }
}

void UtteranceSplitter::begin()
{
    isSpeaking_ = true;
    sink_.beginUtterance(static_cast<int64_t>(quietFrames_) * frameLength);
    sink_.sound(std::vector<int16_t>(preRoll_.begin(), preRoll_.end()));
    preRoll_.clear();
    voicedFrames_ = 0;
    quietFrames_ = 0;
    utteranceFrames_ = 0;
    levels_.clear();
}

void UtteranceSplitter::speak(Frame frame, bool isVoice)
{
    sink_.sound(frame);
    ++utteranceFrames_;
    quietFrames_ = isVoice ? 0 : quietFrames_ + 1;
    if (quietFrames_ >= pauseFrames || isAtDip(frame))
        end();
}

void UtteranceSplitter::end()
{
    isSpeaking_ = false;
    sink_.endUtterance();
}

bool UtteranceSplitter::isAtDip(Frame frame)
{
    const double level = energy(frame);
    const bool isQuietest =
        std::all_of(levels_.begin(), levels_.end(), [level](double earlier) { return level <= earlier; });
    levels_.push_back(level);
    if (levels_.size() > levelHistoryFrames)
        levels_.pop_front();
    return utteranceFrames_ >= longestUtteranceFrames ||
           (utteranceFrames_ >= longUtteranceFrames && isQuietest);
}

} // namespace corvandi
