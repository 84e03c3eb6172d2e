#pragma once

#include "ports/audio_buffer.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace corvandi {

/// What the English model was trained on.
constexpr AudioFormat engineFormat{16000, 1, SampleFormat::int16};

/// Receives what a splitter finds: any number of utterances, one after the other.
class UtteranceSink {
public:
    virtual ~UtteranceSink() = default;

    /// Somebody begins to speak, after a pause of the length given.
    virtual void beginUtterance(std::chrono::milliseconds pauseBefore) = 0;
    virtual void sound(std::span<const int16_t> samples) = 0;
    virtual void endUtterance() = 0;
};

/// Cuts running sound (16 kHz, mono) into utterances at the speaker's pauses, so that each can be
/// recognised while he goes on. An utterance begins a little before the first sound of it and ends once
/// a pause has lasted 400 ms. Somebody who does not pause for 20 seconds is cut off at the next quiet
/// moment. Sound without speech belongs to no utterance.
///
/// Thread: one at a time, any.
class UtteranceSplitter {
public:
    /// Says whether a frame of `samplesPerFrame` samples is speech.
    using HearsVoice = std::function<bool(std::span<const int16_t>)>;
    static constexpr size_t samplesPerFrame = 320;

    /// `sink` must outlive the splitter.
    UtteranceSplitter(UtteranceSink& sink, HearsVoice hearsVoice);

    /// Takes the next piece of sound, of any length.
    void feed(std::span<const int16_t> samples);
    /// Ends the utterance that is still going on: there is no more sound.
    void finish();

private:
    using Frame = std::span<const int16_t>;

    void takeFrame(Frame frame);
    void listen(Frame frame, bool isVoice);
    void speak(Frame frame, bool isVoice);
    void begin();
    void end();
    [[nodiscard]] bool isAtDip(Frame frame);

    UtteranceSink& sink_;
    HearsVoice hearsVoice_;
    /// Samples that don't fill a frame yet.
    std::vector<int16_t> incomplete_;
    /// The last sound before an utterance.
    std::deque<int16_t> preRoll_;
    bool isSpeaking_ = false;
    size_t voicedFrames_ = 0;
    /// Frames without voice, within an utterance or since the last one.
    size_t quietFrames_ = 0;
    size_t utteranceFrames_ = 0;
    /// How loud the last few frames of the utterance were, oldest first.
    std::deque<double> levels_;
};

} // namespace corvandi
