#include "platform/linux/audio/block_assembler.h"

#include <algorithm>

namespace corvandi {

BlockAssembler::BlockAssembler(const AudioFormat& format, uint32_t framesPerBlock, AudioInput::TapBlock tap)
    : samplesPerBlock_(size_t{framesPerBlock} * format.channelCount)
    , tap_(std::move(tap))
    , block_(format, std::vector<float>(samplesPerBlock_))
{
}

void BlockAssembler::append(std::span<const float> samples)
{
    while (!samples.empty()) {
        const std::span<float> space = free();
        const size_t count = std::min(space.size(), samples.size());
        std::copy_n(samples.begin(), count, space.begin());
        samples = samples.subspan(count);
        advance(count);
    }
}

void BlockAssembler::appendSilence(size_t samples)
{
    while (samples > 0) {
        const std::span<float> space = free();
        const size_t count = std::min(space.size(), samples);
        std::fill_n(space.begin(), count, 0.0F);
        samples -= count;
        advance(count);
    }
}

void BlockAssembler::flush()
{
    if (filled_ > 0)
        handOver(filled_);
}

std::span<float> BlockAssembler::free()
{
    auto& samples = std::get<std::vector<float>>(block_.samples());
    return std::span(samples).subspan(filled_);
}

void BlockAssembler::advance(size_t samples)
{
    filled_ += samples;
    if (filled_ == samplesPerBlock_)
        handOver(filled_);
}

void BlockAssembler::handOver(size_t samples)
{
    // Shrinking and growing within the capacity allocates nothing.
    auto& values = std::get<std::vector<float>>(block_.samples());
    values.resize(samples);
    if (tap_)
        tap_(block_);
    values.resize(samplesPerBlock_);
    filled_ = 0;
}

} // namespace corvandi
