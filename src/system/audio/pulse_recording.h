#pragma once

#include "ports/audio_input.h"
#include "system/audio/pulse_connection.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
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

/// One run of recording: a stream from the input device, handed to the tap in equal blocks.
///
/// Thread: the sound thread only; the tap and all callbacks are called there. A callback must not
/// destroy the recording.
class PulseRecording {
public:
    struct Tap {
        AudioFormat format;
        uint32_t framesPerBlock;
        AudioInput::TapBlock block;
    };
    struct Events {
        /// The device runs.
        std::function<void()> started;
        /// Recording could not be started, or has ended by itself, for the reason given. Called at most
        /// once, after all sound has been handed over.
        std::function<void(const QString& reason)> failed;
    };

    PulseRecording(pa_mainloop_api& loop, pa_context* context, const SoundSource& source, Tap tap,
                   Events events);
    /// Ends a drain that is under way.
    ~PulseRecording();
    PulseRecording(const PulseRecording&) = delete;
    PulseRecording& operator=(const PulseRecording&) = delete;

    /// Hands over what has been recorded up to now, also what is still on its way from the device, and
    /// then calls `drained`, also when the recording fails or goes meanwhile. After that the tap is never
    /// called again. Takes as long as the sound is on its way, but at most 450 ms.
    void drain(std::function<void()> drained);

private:
    void connect(pa_context* context, const SoundSource& source, const AudioFormat& format);
    void streamStateChanged();
    void begin();
    void read();
    void take(const void* data, size_t bytes);
    void checkForSound();
    void awaitSound(std::chrono::microseconds delay);
    void fail(const QString& reason);
    void limitDrain(std::chrono::microseconds time);
    void measureWhatIsOnItsWay();
    void endDrain();
    [[nodiscard]] bool hasDrained() const;

    pa_mainloop_api& loop_;
    BlockAssembler blocks_;
    Events events_;
    PulseStream stream_;
    PulseOperation latencyQuery_;
    std::optional<PulseTimer> watchdog_;
    std::optional<PulseTimer> drainLimit_;
    std::function<void()> drained_;
    pa_usec_t drainBegin_ = 0;
    /// While draining: what is still to come, once that is known.
    std::optional<size_t> samplesOnTheirWay_;
    /// When the latest sound came; before the first, when the device began to run.
    pa_usec_t lastSound_ = 0;
    /// Between two pieces of sound.
    std::chrono::microseconds longestGap_{0};
    bool hasSound_ = false;
    bool isRunning_ = false;
};

} // namespace corvandi
