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

    void set(int request, int value) { speex_preprocess_ctl(preprocess.get(), request, &value); }
};

VoiceDetector::VoiceDetector()
    : state_(std::make_unique<State>())
{
    state_->set(SPEEX_PREPROCESS_SET_VAD, 1);
    state_->set(SPEEX_PREPROCESS_SET_DENOISE, 0);
    state_->set(SPEEX_PREPROCESS_SET_PROB_START, startProbability);
    state_->set(SPEEX_PREPROCESS_SET_PROB_CONTINUE, continueProbability);
}

VoiceDetector::~VoiceDetector() = default;

bool VoiceDetector::hears(std::span<const int16_t> frame)
{
    // It works in place.
    std::array<int16_t, samplesPerFrame> copy{};
    std::copy_n(frame.begin(), copy.size(), copy.begin());
    return speex_preprocess_run(state_->preprocess.get(), copy.data()) != 0;
}

} // namespace corvandi
