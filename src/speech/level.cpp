#include "speech/level.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <type_traits>

namespace corvandi {
namespace {

// Independent partial sums: a compiler may not reorder one float sum, so a single one would keep it
// from using vector registers.
constexpr size_t laneCount = 8;

/// The sum of the squares of `count` samples, of which each is `stride` after the one before. With a
/// constant stride of one the inner loop becomes vector code.
template<class Stride>
double sumOfSquares(const float* samples, size_t count, Stride stride)
{
    std::array<float, laneCount> lanes{};
    const size_t wholeBlocks = count - count % laneCount;
    for (size_t block = 0; block < wholeBlocks; block += laneCount) {
        for (size_t lane = 0; lane < laneCount; ++lane) {
            const float sample = samples[(block + lane) * stride];
            lanes[lane] += sample * sample;
        }
    }
    double sum = 0;
    for (const float lane : lanes)
        sum += static_cast<double>(lane);
    for (size_t index = wholeBlocks; index < count; ++index) {
        const auto sample = static_cast<double>(samples[index * stride]);
        sum += sample * sample;
    }
    return sum;
}

} // namespace

float level(const AudioBuffer& buffer)
{
    const std::span<const float> samples = buffer.floatSamples();
    const size_t stride = buffer.format().channelCount;
    if (stride == 0 || samples.size() < stride)
        return 0;
    const size_t frames = samples.size() / stride;
    const double sum = stride == 1 ? sumOfSquares(samples.data(), frames, std::integral_constant<size_t, 1>())
                                   : sumOfSquares(samples.data(), frames, stride);
    return static_cast<float>(std::sqrt(sum / static_cast<double>(frames)));
}

} // namespace corvandi
