#include "speech/buffer_conversion.h"

#include "speech/frame_count.h"

#include <new>
#include <utility>

namespace corvandi {
namespace {

// Room for what the resampler still held from the buffers before.
constexpr uint32_t headroomFrames = 1024;

uint32_t outputCapacity(const AudioBuffer& buffer, const AudioFormat& target)
{
    const double ratio = target.sampleRate / buffer.format().sampleRate;
    return addFrames(wholeFrames(ratio * buffer.frameLength()), headroomFrames);
}

AudioConverter::InputBlock handingOverOnce(const AudioBuffer& buffer)
{
    return [next = &buffer]() mutable -> ConverterInput {
        const AudioBuffer* handed = std::exchange(next, nullptr);
        return {handed ? ConverterInputStatus::haveData : ConverterInputStatus::noDataNow, handed};
    };
}

} // namespace

BufferConversion convertBuffer(const AudioBuffer& buffer, const AudioFormat& target,
                               AudioConverter* converter)
{
    try {
        if (buffer.format() == target)
            return {buffer, std::nullopt};
        if (!converter)
            return {};
        Conversion conversion = converter->convert(outputCapacity(buffer, target), handingOverOnce(buffer));
        if (conversion.error)
            return {std::nullopt, std::move(conversion.error)};
        if (conversion.output.frameLength() == 0)
            return {};
        return {std::move(conversion.output), std::nullopt};
    } catch (const std::bad_alloc&) {
        // One piece of sound is lost; the dictation goes on.
        return {};
    }
}

} // namespace corvandi
