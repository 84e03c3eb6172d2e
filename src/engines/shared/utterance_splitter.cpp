#include "engines/shared/utterance_splitter.h"

#include <speex/speex_preprocess.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <optional>

namespace corvandi {
namespace {

constexpr int sampleRate = 16000;
/// Percent. From here on silence becomes speech, and speech goes on.
constexpr int startProbability = 80;
constexpr int continueProbability = 65;

// Levels in dB below full scale.

/// Nothing softer than this is speech into a microphone.
constexpr double softestVoice = -55;
/// How far speech stands out from the background.
constexpr double voiceAboveFloor = 9;
/// Where backgrounds lie. One that seems louder is speech that began before the recording did.
constexpr double lowestFloor = -75;
constexpr double highestFloor = -35;
/// The floor follows a softer sound at once and a louder one by one decibel in a second.
constexpr double floorFall = 0.3;
constexpr double floorRise = 0.02;

double level(std::span<const int16_t> frame)
{
    constexpr double fullScale = 32768.0 * 32768.0;
    const double energy = std::accumulate(frame.begin(), frame.end(), 1.0, [](double sum, int16_t sample) {
        return sum + static_cast<double>(sample) * sample;
    });
    return 10 * std::log10(energy / static_cast<double>(frame.size()) / fullScale);
}

struct PreprocessDeleter {
    void operator()(SpeexPreprocessState* state) const { speex_preprocess_state_destroy(state); }
};

} // namespace

struct VoiceDetector::State {
    std::unique_ptr<SpeexPreprocessState, PreprocessDeleter> preprocess{
        speex_preprocess_state_init(static_cast<int>(samplesPerFrame), sampleRate)};

    bool heardVoice = false;
    std::optional<double> floor;

    /// Whether sound of this level stands out from the background.
    bool standsOut(double loudness)
    {
        double background = floor.value_or(loudness);
        background += loudness < background ? floorFall * (loudness - background) : floorRise;
        floor = std::clamp(background, lowestFloor, highestFloor);
        return loudness > std::max(*floor + voiceAboveFloor, softestVoice);
    }
    /// Whether sound has the spectrum of speech rather than that of what was there before.
    bool soundsLikeSpeech(std::span<const int16_t> frame)
    {
        // It works in place.
        std::array<int16_t, samplesPerFrame> copy{};
        std::copy_n(frame.begin(), copy.size(), copy.begin());
        speex_preprocess_run(preprocess.get(), copy.data());
        // The library's own decision is this same comparison, but switching it on prints a warning.
        int probability = 0;
        speex_preprocess_ctl(preprocess.get(), SPEEX_PREPROCESS_GET_PROB, &probability);
        return probability > (heardVoice ? continueProbability : startProbability);
    }
};

VoiceDetector::VoiceDetector()
    : state_(std::make_unique<State>())
{
    int off = 0;
    speex_preprocess_ctl(state_->preprocess.get(), SPEEX_PREPROCESS_SET_DENOISE, &off);
}

VoiceDetector::~VoiceDetector() = default;

bool VoiceDetector::hears(std::span<const int16_t> frame)
{
    // The spectrum alone won't do: it takes more than a second to learn what silence sounds like.
    const bool isSpeech = state_->soundsLikeSpeech(frame);
    state_->heardVoice = state_->standsOut(level(frame)) && isSpeech;
    return state_->heardVoice;
}

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
