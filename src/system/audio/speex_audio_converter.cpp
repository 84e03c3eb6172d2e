#include "system/audio/speex_audio_converter.h"

#include "system/audio/speech_channel.h"

#include <speex/speex_resampler.h>

#include <algorithm>
#include <cmath>
#include <span>

namespace corvandi {
namespace {

constexpr float int16Scale = 32768.0F;
/// Of 0 to 10. Flat up to 7 kHz of 8, 2.5 ms of delay, some thousand times faster than the sound.
constexpr int resamplerQuality = 5;
/// Room for the longest buffer that a microphone's tap delivers; longer ones make it grow once.
constexpr size_t expectedFrames = 8192;

struct ResamplerDeleter {
    void operator()(SpeexResamplerState* state) const { speex_resampler_destroy(state); }
};
using Resampler = std::unique_ptr<SpeexResamplerState, ResamplerDeleter>;

bool isUsable(const AudioFormat& format)
{
    const double rate = format.sampleRate;
    return rate >= 1 && rate <= 1e6 && rate == std::floor(rate) && format.channelCount > 0;
}

/// No resampler when the rates are equal.
Resampler makeResampler(const AudioFormat& from, const AudioFormat& to)
{
    if (from.sampleRate == to.sampleRate)
        return nullptr;
    int error = RESAMPLER_ERR_SUCCESS;
    Resampler resampler(speex_resampler_init(1, static_cast<spx_uint32_t>(from.sampleRate),
                                             static_cast<spx_uint32_t>(to.sampleRate), resamplerQuality,
                                             &error));
    // The filter's run-in is left out, so that the output lies where the input does.
    if (resampler)
        speex_resampler_skip_zeros(resampler.get());
    return resampler;
}

float fullScale(int16_t sample)
{
    return static_cast<float>(sample) / int16Scale;
}

int16_t toInt16(float sample)
{
    return static_cast<int16_t>(std::lrint(std::clamp(sample * int16Scale, -32768.0F, 32767.0F)));
}

AudioBuffer makeBuffer(const AudioFormat& format, std::vector<float> samples)
{
    if (format.sampleFormat == SampleFormat::float32)
        return {format, std::move(samples)};
    std::vector<int16_t> values(samples.size());
    std::transform(samples.begin(), samples.end(), values.begin(), toInt16);
    return {format, std::move(values)};
}

class SpeexAudioConverter : public AudioConverter {
public:
    SpeexAudioConverter(const AudioFormat& from, const AudioFormat& to, Resampler resampler)
        : from_(from)
        , to_(to)
        , channel_(from.channelCount, from.sampleRate)
        , resampler_(std::move(resampler))
    {
        waiting_.reserve(expectedFrames);
    }

    Conversion convert(const AudioBuffer& buffer, uint32_t frameCapacity) override
    {
        if (buffer.format() != from_)
            return {{}, QStringLiteral("the sound is not in the format that was agreed on")};
        channel_.append(floats(buffer), waiting_);
        std::vector<float> output(frameCapacity);
        output.resize(resampleInto(output));
        return {makeBuffer(to_, std::move(output)), std::nullopt};
    }

private:
    [[nodiscard]] std::span<const float> floats(const AudioBuffer& buffer)
    {
        if (from_.sampleFormat == SampleFormat::float32)
            return buffer.floatSamples();
        const auto values = buffer.int16Samples();
        scaled_.resize(values.size());
        std::transform(values.begin(), values.end(), scaled_.begin(), fullScale);
        return scaled_;
    }

    /// Makes as much output of the sound that waits as fits; the rest goes on waiting.
    size_t resampleInto(std::span<float> output)
    {
        auto consumed = static_cast<spx_uint32_t>(waiting_.size());
        auto made = static_cast<spx_uint32_t>(output.size());
        if (resampler_) {
            speex_resampler_process_float(resampler_.get(), 0, waiting_.data(), &consumed, output.data(),
                                          &made);
        } else {
            consumed = made = std::min(consumed, made);
            std::copy_n(waiting_.begin(), made, output.begin());
        }
        waiting_.erase(waiting_.begin(), waiting_.begin() + consumed);
        return made;
    }

    AudioFormat from_;
    AudioFormat to_;
    SpeechChannel channel_;
    Resampler resampler_;
    /// The latest buffer, when it came as integers.
    std::vector<float> scaled_;
    /// Mono sound, in the source's rate, that has not gone through the resampler yet.
    std::vector<float> waiting_;
};

} // namespace

std::unique_ptr<AudioConverter> SpeexAudioConverterFactory::create(const AudioFormat& from,
                                                                   const AudioFormat& to)
{
    if (!isUsable(from) || !isUsable(to) || to.channelCount != 1)
        return nullptr;
    Resampler resampler = makeResampler(from, to);
    if (!resampler && from.sampleRate != to.sampleRate)
        return nullptr;
    return std::make_unique<SpeexAudioConverter>(from, to, std::move(resampler));
}

} // namespace corvandi
