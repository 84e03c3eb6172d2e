#pragma once

#include "engines/shared/speech_gain.h"
#include "engines/shared/utterance_decoder.h"
#include "ports/audio_buffer.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace corvandi {

/// Spells the recogniser's bare words as sentences: a capital at the start, the word "I", and a full
/// stop where the speaker paused as between sentences and at the end. The pieces that it returns
/// concatenate to the text as they are. One speller spells one dictation.
class SentenceSpeller {
public:
    /// Spells what was said after a pause of the length given. Empty when there are no words.
    [[nodiscard]] QString add(const QString& words, std::chrono::milliseconds pauseBefore);
    /// What ends the text; empty when nothing was said.
    [[nodiscard]] QString finish();

private:
    [[nodiscard]] QString separator(std::chrono::milliseconds pauseBefore) const;

    bool hasText_ = false;
    /// Pauses around noise in which no words were found add up.
    std::chrono::milliseconds pause_{0};
};

/// The recognition of one dictation, from its first sound to its end, utterance by utterance.
class RecognitionRun {
public:
    explicit RecognitionRun(std::shared_ptr<AudioStream> input)
        : input_(std::move(input))
    {
    }

    /// What an engine gives to a run.
    struct Engine {
        UtteranceDecoder& decoder;
        /// Makes another one when that has failed.
        RetryingDecoder::Replace replace;
        /// The one of all dictations.
        SpeechGain& gain;
    };
    /// Hands each piece of the transcript to `report` and returns when the input has ended. Throws
    /// `Error` when the decoder fails twice or the sound is in the wrong format. Once. Decoder's thread.
    void recognise(const Engine& engine, const std::function<void(const QString& text)>& report);

    /// Makes the recognition end as soon as the decoder has done the 0.1 s of sound that it works on, with
    /// whatever result. Any thread.
    void cancel();

private:
    std::shared_ptr<AudioStream> input_;
    std::atomic<bool> isCancelled_ = false;
};

} // namespace corvandi
