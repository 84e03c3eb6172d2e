#include "system/audio/speech_channel.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace corvandi {
namespace {

/// A whole period of a mains' hum, so that it is steady.
constexpr double hopsPerSecond = 100;
/// By how much speech stands out of the noise: 6 dB.
constexpr double speechOverNoise = 4;
/// By how much the noise may grow from hop to hop: 6 dB in a second. Speech has gaps long before that.
constexpr double noiseGrowth = 1.01396;
/// No noise is less, or else it could never grow: -100 dB.
constexpr double leastNoise = 1e-10;
/// What is left of a hop's loudness one hop later: of 0.3 s ago a third still counts.
constexpr double memory = 0.96722;
/// By how much another channel must be louder.
constexpr double preference = 1.5;

} // namespace

SpeechChannel::SpeechChannel(size_t channelCount, double sampleRate)
    : channels_(channelCount)
    , framesPerHop_(std::max<size_t>(1, static_cast<size_t>(sampleRate / hopsPerSecond)))
{
}

void SpeechChannel::append(std::span<const float> samples, std::vector<float>& mono)
{
    const size_t count = channels_.size();
    if (count == 1) {
        mono.insert(mono.end(), samples.begin(), samples.end());
        return;
    }
    for (; samples.size() >= count; samples = samples.subspan(count))
        mono.push_back(next(samples.first(count)));
}

float SpeechChannel::next(std::span<const float> frame)
{
    for (size_t index = 0; index < frame.size(); ++index)
        channels_[index].squares += static_cast<double>(frame[index]) * static_cast<double>(frame[index]);
    ++framesOfHop_;
    float sample = frame[chosen_];
    if (former_ != chosen_) {
        const float share = static_cast<float>(framesOfHop_) / static_cast<float>(framesPerHop_);
        sample = frame[former_] + share * (sample - frame[former_]);
    }
    if (framesOfHop_ == framesPerHop_)
        endHop();
    return sample;
}

void SpeechChannel::endHop()
{
    former_ = chosen_;
    framesOfHop_ = 0;
    bool isAnybodySpeaking = false;
    for (Channel& channel : channels_) {
        channel.listen(framesPerHop_);
        isAnybodySpeaking = isAnybodySpeaking || channel.isSpeaking;
    }
    if (isAnybodySpeaking && !std::exchange(hasHeardSpeech_, true)) {
        for (Channel& channel : channels_)
            channel.loudness = 0;
    }
    if (isAnybodySpeaking || !hasHeardSpeech_)
        choose();
}

void SpeechChannel::Channel::listen(size_t frames)
{
    power = std::exchange(squares, 0) / static_cast<double>(frames);
    isSpeaking = power > speechOverNoise * noise;
    noise = std::max(leastNoise, std::min(power, noise * noiseGrowth));
}

void SpeechChannel::choose()
{
    for (Channel& channel : channels_) {
        channel.loudness *= memory;
        if (channel.isSpeaking || !hasHeardSpeech_)
            channel.loudness += std::sqrt(channel.power);
    }
    const auto isLess = [](const Channel& one, const Channel& other) {
        return one.loudness < other.loudness;
    };
    const auto loudest = std::max_element(channels_.begin(), channels_.end(), isLess);
    if (loudest->loudness > preference * channels_[chosen_].loudness)
        chosen_ = static_cast<size_t>(loudest - channels_.begin());
}

} // namespace corvandi
