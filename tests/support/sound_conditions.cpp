#include "support/sound_conditions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <random>

namespace corvandi::testing {
namespace {

using Values = std::vector<double>;

constexpr size_t frameLength = 320;
constexpr size_t leadSamples = 8000;
constexpr double fullScale = 32768;

double power(const Values& values)
{
    const double sum = std::inner_product(values.begin(), values.end(), values.begin(), 0.0);
    return sum / static_cast<double>(values.size());
}

double inDecibels(double power)
{
    return 10 * std::log10(power / (fullScale * fullScale));
}

Values valuesOf(const Samples& sound)
{
    return {sound.begin(), sound.end()};
}

Samples rounded(const Values& values)
{
    Samples sound(values.size());
    std::transform(values.begin(), values.end(), sound.begin(), [](double value) {
        return static_cast<int16_t>(std::lrint(std::clamp(value, -32768.0, 32767.0)));
    });
    return sound;
}

void amplify(Values& values, double decibels)
{
    for (double& value : values)
        value *= std::pow(10, decibels / 20);
}

/// White noise through a row of first-order filters, whose sum falls by 3 dB an octave.
class PinkFilter {
public:
    double operator()(double white)
    {
        constexpr std::array poles{0.99886, 0.99332, 0.969, 0.8665, 0.55};
        constexpr std::array gains{0.0555179, 0.0750759, 0.153852, 0.3104856, 0.5329522};
        double sum = 0.5362 * white;
        for (size_t i = 0; i < poles.size(); ++i) {
            states_.at(i) = poles.at(i) * states_.at(i) + gains.at(i) * white;
            sum += states_.at(i);
        }
        return sum;
    }

private:
    std::array<double, 5> states_{};
};

Values babble(size_t count, size_t except)
{
    Values sum(count);
    const auto& recordings = humanRecordings();
    for (size_t index = 0; index < recordings.size(); ++index) {
        if (index == except)
            continue;
        const Samples sound = atLevel(recordings[index].load(), -30);
        for (size_t i = 0; i < count; ++i)
            sum[i] += sound[(i + 7001 * index) % sound.size()];
    }
    return sum;
}

Values makeNoise(Noise kind, size_t count, size_t except)
{
    std::mt19937 generator(1); // NOLINT: the same noise in each run
    std::normal_distribution<double> sample(0, 1000);
    Values values(count);
    switch (kind) {
    case Noise::white:
        std::generate(values.begin(), values.end(), [&] { return sample(generator); });
        return values;
    case Noise::pink:
        std::generate(values.begin(), values.end(),
                      [&, filter = PinkFilter()]() mutable { return filter(sample(generator)); });
        return values;
    case Noise::babble:
        return babble(count, except);
    }
    return values;
}

Values noiseAt(Noise kind, size_t count, double level, size_t except)
{
    Values values = makeNoise(kind, count, except);
    amplify(values, level - inDecibels(power(values)));
    return values;
}

} // namespace

double speechLevel(const Samples& sound)
{
    // Pauses are softer than the loudest frame by more than this.
    constexpr double softest = 1e-3;
    Values powers;
    for (size_t at = 0; at + frameLength <= sound.size(); at += frameLength) {
        const auto begin = sound.begin() + static_cast<ptrdiff_t>(at);
        powers.push_back(power(Values(begin, begin + frameLength)));
    }
    const double loudest = *std::max_element(powers.begin(), powers.end());
    std::erase_if(powers, [loudest](double each) { return each <= softest * loudest; });
    const double sum = std::accumulate(powers.begin(), powers.end(), 0.0);
    return inDecibels(sum / static_cast<double>(powers.size()));
}

Samples atLevel(const Samples& sound, double level)
{
    Values values = valuesOf(sound);
    amplify(values, level - speechLevel(sound));
    return rounded(values);
}

Samples noise(Noise kind, size_t count, double level, size_t except)
{
    return rounded(noiseAt(kind, count, level, except));
}

Samples recordingInNoise(size_t index, double level, Noise kind, double distance)
{
    const Samples sound = humanRecordings().at(index).load();
    Values values = valuesOf(sound);
    amplify(values, level - speechLevel(sound));
    Values mixed = noiseAt(kind, values.size() + 2 * leadSamples, level - distance, index);
    for (size_t i = 0; i < values.size(); ++i)
        mixed[leadSamples + i] += values[i];
    return rounded(mixed);
}

} // namespace corvandi::testing
