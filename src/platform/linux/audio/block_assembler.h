#pragma once

#include "platform/audio_input.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace corvandi {

/// Makes blocks of equal length out of pieces of any length and hands each to the tap. One buffer is
/// used over and over, so that nothing is allocated while sound runs.
///
/// Thread: one at a time, any.
class BlockAssembler {
public:
    BlockAssembler(const AudioFormat& format, uint32_t framesPerBlock, AudioInput::TapBlock tap);

    /// Appends interleaved samples.
    void append(std::span<const float> samples);
    /// Appends `samples` samples of silence, in the place of sound that was lost.
    void appendSilence(size_t samples);
    /// Hands over the block that is not full yet, if it holds anything.
    void flush();

private:
    [[nodiscard]] std::span<float> free();
    void advance(size_t samples);
    void handOver(size_t samples);

    size_t samplesPerBlock_;
    AudioInput::TapBlock tap_;
    AudioBuffer block_;
    size_t filled_ = 0;
};

} // namespace corvandi
