#pragma once

#include "base/main_queue.h"
#include "ports/audio_buffer.h"
#include "ports/audio_input.h"

#include <QCoroTask>
#include <QString>

#include <functional>
#include <memory>

namespace corvandi {

/// The loudness of `buffer`: the root mean square of its first channel, 0 (silence) to 1 (a full-scale
/// square wave). 0 for an empty buffer and for one without float samples.
///
/// Thread: any; real-time safe.
[[nodiscard]] float level(const AudioBuffer& buffer);

/// Captures the microphone: hands every buffer to its owner at once and tells how loud it was.
///
/// Thread: main thread only; `onBuffer` is called on the audio thread. The input and the queue must
/// outlive the engine.
///
/// Calls of `start` and `stop` take effect one after the other, in the order in which they were made.
/// The engine may be destroyed at any time: capture ends at once, what the input still holds is
/// dropped, no callback runs any more, and a start that is under way ends with an error. (The
/// destructor waits for an `onBuffer` call that is just running.)
class AudioEngine {
public:
    AudioEngine(AudioInput& input, MainQueue& queue);
    ~AudioEngine();
    AudioEngine(const AudioEngine&) = delete;
    AudioEngine& operator=(const AudioEngine&) = delete;

    /// Called with every captured buffer, on the audio thread: no waiting, no logging. `start` takes it
    /// as it is at that moment; a later change counts from the next start on.
    std::function<void(const AudioBuffer&)> onBuffer;
    /// Called with the level of every buffer (the root mean square of its first channel, 0 to 1; 0
    /// without float samples), later, on the main thread. Taken by `start` like `onBuffer`.
    std::function<void(float)> onLevel;

    /// Called on the main thread when capture has ended by itself, with the reason, which the log has
    /// already: the device or the sound server went away, or no sound came. All that was recorded has
    /// been passed to `onBuffer` before. At most once for each start, never once `stop` was called; it
    /// may call `start`, which takes the device that is the default one by then, and may destroy the
    /// engine. Taken by `start` like `onBuffer`.
    std::function<void(const QString& reason)> onEnd;

    /// From the end of a successful `start` to the end of `stop`, or until capture ends by itself.
    [[nodiscard]] bool running() const;
    /// Whether the default input device is muted, so that there is nothing to capture but silence.
    [[nodiscard]] bool isInputMuted() const;
    /// Starts capture; the task ends when the device runs, and gives the format in which all buffers
    /// come until capture ends. Does nothing but that when capture runs already. Throws `Error` when
    /// there is no input device and when the input can't be started; nothing is left installed then.
    [[nodiscard]] QCoro::Task<AudioFormat> start();
    /// Stops capture. All that was recorded up to this call has been passed to `onBuffer` when the task
    /// ends. Does nothing when capture isn't running.
    [[nodiscard]] QCoro::Task<> stop();

private:
    struct Capture;

    std::shared_ptr<Capture> capture_;
};

} // namespace corvandi
