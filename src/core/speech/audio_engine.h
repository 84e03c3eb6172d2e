#pragma once

#include "base/main_queue.h"
#include "ports/audio_buffer.h"
#include "ports/audio_input.h"

#include <QCoroTask>

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

    /// From the end of a successful `start` to the end of `stop`.
    [[nodiscard]] bool running() const;
    /// The format of the default input device; a sample rate of 0 means that there is none.
    [[nodiscard]] AudioFormat inputFormat() const;
    /// Starts capture; the task ends when the device runs. Does nothing when it does already. Throws
    /// `Error` when there is no input device and when the input can't be started; nothing is left
    /// installed then.
    [[nodiscard]] QCoro::Task<> start();
    /// Stops capture. All that was recorded up to this call has been passed to `onBuffer` when the task
    /// ends. Does nothing when capture isn't running.
    [[nodiscard]] QCoro::Task<> stop();

private:
    struct Capture;

    std::shared_ptr<Capture> capture_;
};

} // namespace corvandi
