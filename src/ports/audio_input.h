#pragma once

#include "ports/audio_buffer.h"

#include <QCoroTask>

#include <cstdint>
#include <functional>

namespace corvandi {

/// The microphone: an audio engine with one input node whose bus 0 is the default input device.
///
/// Thread: main thread only, except the tap block, which runs on the audio thread. No call blocks.
///
/// When the device or the sound server goes away while running, the block simply isn't called any more
/// and the adapter logs why; `removeTap` and `stop` still work, and a later `start` begins afresh. A
/// device that delivers nothing for a second counts as gone.
class AudioInput {
public:
    /// Called for each block of sound. Real-time rules: no waiting, no logging.
    using TapBlock = std::function<void(const AudioBuffer&)>;

    virtual ~AudioInput() = default;

    /// The format of the default input device, as the device itself delivers it (float32). A sample
    /// rate of 0 means that there is none. Known without asking anybody while the sound server is up.
    [[nodiscard]] virtual AudioFormat inputFormat() = 0;
    /// From the next `start` on, hands all sound to `block` in blocks of exactly `frames` frames (the
    /// last one may be shorter). Replaces a tap that is installed already.
    virtual void installTap(uint32_t frames, const AudioFormat& format, TapBlock block) = 0;
    /// Hands everything that was recorded up to this call to the block, then forgets the block, which
    /// is never called after the task has ended. Bounded: at most 100 ms.
    [[nodiscard]] virtual QCoro::Task<> removeTap() = 0;
    /// Gets everything ready that `start` will need.
    virtual void prepare() = 0;
    /// Starts recording; the task ends when the device runs. Throws `Error` when it can't.
    [[nodiscard]] virtual QCoro::Task<> start() = 0;
    /// Stops recording. Harmless when not running.
    virtual void stop() = 0;
};

} // namespace corvandi
