#include "engines/shared/speech_gain.h"

#include "engines/shared/loudness.h"

#include <algorithm>

namespace corvandi {
namespace {

/// The mean over frames of voice, in dB. Engines get used to these by themselves, and a gain that changes
/// while the level is being learned costs words at the beginning of a dictation: measured, as was the range.
constexpr double softestUsual = -38;
constexpr double loudestUsual = -20;
/// Beyond that only the noise of the converter would grow.
constexpr double strongestGain = 40;
constexpr double strongestAttenuation = -20;
constexpr double softestLevel = -90;
/// A second: the frames have 20 ms.
constexpr size_t mostWeight = 50;
/// What earlier dictations are worth against the first frames of a new one.
constexpr size_t weightOfEarlier = 12;

} // namespace

SpeechGain::SpeechGain(std::optional<double> level)
{
    if (level && *level >= softestLevel && *level <= 0)
        level_ = level;
    beginDictation();
}

void SpeechGain::beginDictation()
{
    weight_ = level_ ? weightOfEarlier : 0;
}

void SpeechGain::learn(std::span<const int16_t> voice)
{
    const double heard = loudness(voice);
    weight_ = std::min(weight_ + 1, mostWeight);
    const double before = level_.value_or(heard);
    level_ = before + (heard - before) / static_cast<double>(weight_);
}

std::vector<int16_t> SpeechGain::apply(std::span<const int16_t> sound) const
{
    const double level = level_.value_or(softestUsual);
    const double gain = std::clamp(std::clamp(level, softestUsual, loudestUsual) - level,
                                   strongestAttenuation, strongestGain);
    const double factor = std::pow(10, gain / 20);
    std::vector<int16_t> result(sound.size());
    std::transform(sound.begin(), sound.end(), result.begin(), [factor](int16_t sample) {
        return static_cast<int16_t>(std::lrint(std::clamp(sample * factor, -32768.0, 32767.0)));
    });
    return result;
}

} // namespace corvandi
