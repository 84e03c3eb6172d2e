#include "speech/frame_count.h"

#include <QtGlobal>

#include <limits>

namespace corvandi {

uint32_t wholeFrames(double count)
{
    constexpr double end = 4294967296.0; // 2^32
    // Written so that a value that is not a number fails as well.
    const bool fits = count >= 0 && count < end;
    if (!fits)
        qFatal("Corvandi: %f frames don't fit into a frame count", count);
    return static_cast<uint32_t>(count);
}

uint32_t addFrames(uint32_t first, uint32_t second)
{
    if (second > std::numeric_limits<uint32_t>::max() - first)
        qFatal("Corvandi: %u + %u frames don't fit into a frame count", first, second);
    return first + second;
}

} // namespace corvandi
