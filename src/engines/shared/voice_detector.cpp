#include "engines/shared/voice_detector.h"

#include "engines/shared/loudness.h"

#include <speex/speex_preprocess.h>

#include <algorithm>
#include <array>
#include <optional>

namespace corvandi {
namespace {

constexpr int sampleRate = 16000;
/// Percent. From here on silence becomes speech, and speech goes on.
constexpr int startProbability = 80;
constexpr int continueProbability = 65;

// Levels in dB below full scale.

/// Nothing softer than this is more than the last bits of a converter.
constexpr double softestVoice = -80;
/// How far speech stands out from the background.
constexpr double voiceAboveFloor = 9;
/// Where backgrounds lie. One that seems louder is speech that began before the recording did.
constexpr double lowestFloor = -85;
constexpr double highestFloor = -20;
/// The floor follows a softer sound at once and a louder one by one decibel in a second.
constexpr double floorFall = 0.3;
constexpr double floorRise = 0.02;

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
    bool standsOut(double level)
    {
        double background = floor.value_or(level);
        background += level < background ? floorFall * (level - background) : floorRise;
        floor = std::clamp(background, lowestFloor, highestFloor);
        return level > std::max(*floor + voiceAboveFloor, softestVoice);
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
    state_->heardVoice = state_->standsOut(loudness(frame)) && isSpeech;
    return state_->heardVoice;
}

} // namespace corvandi
