#include "platform/linux/pocketsphinx/voice_detector.h"

#include <speex/speex_preprocess.h>

#include <algorithm>
#include <array>

namespace corvandi
{
namespace
{

constexpr int sampleRate = 16000;
/// Percent. From here on silence becomes speech, and speech goes on.
constexpr int startProbability = 80;
constexpr int continueProbability = 65;

struct PreprocessDeleter {
    void operator()(SpeexPreprocessState* state) const { speex_preprocess_state_destroy(state); }
};

} // namespace

struct VoiceDetector::State {
    std::unique_ptr<SpeexPreprocessState, PreprocessDeleter> preprocess{
        speex_preprocess_state_init(static_cast<int>(samplesPerFrame), sampleRate)};

    bool heardVoice = false;
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
    // It works in place.
    std::array<int16_t, samplesPerFrame> copy{};
    std::copy_n(frame.begin(), copy.size(), copy.begin());
    speex_preprocess_run(state_->preprocess.get(), copy.data());
    // The library's own detector is this same comparison, but switching it on prints a warning.
    int probability = 0;
    speex_preprocess_ctl(state_->preprocess.get(), SPEEX_PREPROCESS_GET_PROB, &probability);
    state_->heardVoice = probability > (state_->heardVoice ? continueProbability : startProbability);
    return state_->heardVoice;
}

} // namespace corvandi
