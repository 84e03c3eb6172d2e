#pragma once

#include "ports/audio_buffer.h"

#include <QCoroTask>

#include <QString>

#include <cstdint>
#include <functional>

namespace corvandi {

/// The microphone: an audio engine with one input node whose bus 0 is the default input device.
///
/// Thread: main thread only, except the tap block, which runs on the audio thread. No call blocks.
///
/// A recording can end by itself: the device or the sound server goes away, or the device delivers
/// nothing for too long. The adapter logs why and tells whoever has started it; a later `start` begins
/// afresh.
class AudioInput {
public:
    /// Called for each block of sound. Real-time rules: no waiting, no logging.
    using TapBlock = std::function<void(const AudioBuffer&)>;
    /// Called when a recording has ended by itself, with the reason as the log has it: at most once for
    /// each `start`, later, on the main thread, never after `stop` or the next `start`. All that was
    /// recorded until then has been handed to the block before, which is not called again. It may call
    /// the input.
    using EndHandler = std::function<void(const QString& reason)>;

    virtual ~AudioInput() = default;

    /// The format of the default input device, as the device itself delivers it (float32). A sample
    /// rate of 0 means that there is none. Known without asking anybody while the sound server is up.
    [[nodiscard]] virtual AudioFormat inputFormat() = 0;
    /// Whether the default input device is muted, or its volume zero, so that nothing but silence comes
    /// of it. False when there is none. Known without asking anybody while the sound server is up.
    [[nodiscard]] virtual bool isMuted() = 0;
    /// From the next `start` on, hands all sound to `block` in blocks of exactly `frames` frames (the
    /// last one may be shorter). Replaces a tap that is installed already.
    virtual void installTap(uint32_t frames, const AudioFormat& format, TapBlock block) = 0;
    /// Hands everything that was recorded up to this call to the block, then forgets the block, which
    /// is never called after the task has ended. Takes as long as the device's sound takes to get here,
    /// at most half a second; ends at once when nothing is recorded any more.
    [[nodiscard]] virtual QCoro::Task<> removeTap() = 0;
    /// Gets everything ready that `start` will need.
    virtual void prepare() = 0;
    /// Starts recording; the task ends when the device runs. Throws `Error` when it can't. `ended`,
    /// which may be empty, counts from then on.
    [[nodiscard]] virtual QCoro::Task<> start(EndHandler ended) = 0;
    /// Stops recording. Harmless when not running.
    virtual void stop() = 0;
};

} // namespace corvandi
