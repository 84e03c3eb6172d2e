#pragma once

#include <cmath>
#include <cstdint>
#include <numeric>
#include <span>

namespace corvandi {

/// How loud `frame` is, in dB below full scale (dBFS): its root mean square. Digital silence counts as
/// something softer than the least that a frame of 16-bit samples can hold.
[[nodiscard]] inline double loudness(std::span<const int16_t> frame)
{
    constexpr double fullScale = 32768.0 * 32768.0;
    const double energy = std::accumulate(frame.begin(), frame.end(), 1.0, [](double sum, int16_t sample) {
        return sum + static_cast<double>(sample) * sample;
    });
    return 10 * std::log10(energy / static_cast<double>(frame.size()) / fullScale);
}

} // namespace corvandi
