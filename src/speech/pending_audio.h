#pragma once

#include "platform/audio_buffer.h"
#include "platform/audio_stream.h"

#include <cstdint>
#include <utility>

namespace corvandi {

/// The sound that was captured before anybody could take it, oldest first; only the last seconds of
/// it. Handing buffers in and out moves list nodes and allocates nothing.
///
/// Thread: any, one at a time; its owner locks.
class PendingAudio {
public:
    using Buffers = AudioStream::Node;

    /// The bound on the frames that are kept: 8 seconds at 48 kHz.
    static constexpr uint32_t maxFrames = 384000;

    [[nodiscard]] const Buffers& buffers() const { return buffers_; }
    /// The sum of the buffers' frame lengths.
    [[nodiscard]] uint32_t frames() const { return frames_; }

    /// Appends the one buffer that `node` holds and returns the oldest ones that had to go to keep the
    /// bound. The newest is always kept, even when it alone exceeds the bound.
    [[nodiscard]] Buffers append(Buffers node);
    /// Takes everything out, oldest first.
    [[nodiscard]] Buffers takeAll();

private:
    Buffers buffers_;
    uint32_t frames_ = 0;
};

} // namespace corvandi
