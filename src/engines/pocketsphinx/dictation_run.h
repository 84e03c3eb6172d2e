#pragma once

#include "engines/pocketsphinx/sphinx_decoder.h"
#include "ports/audio_buffer.h"

#include <QString>

#include <atomic>
#include <functional>
#include <memory>

namespace corvandi {

/// What one dictation hands to the decoder's thread.
struct Dictation {
    std::shared_ptr<AudioStream> input;
    /// Takes a piece of the transcript. Decoder thread.
    std::function<void(QString text)> recognised;
    /// Says that there is nothing more to come, and why if something failed. Decoder thread.
    std::function<void(std::exception_ptr failure)> ended;
    std::atomic<bool> isCancelled = false;

    /// Makes the recognition end soon, with whatever result. Any thread.
    void cancel()
    {
        isCancelled = true;
        input->finish();
    }
};

/// Recognises one dictation from its first sound to its end, utterance by utterance. Throws `Error`
/// when the decoder fails or the sound is in the wrong format.
void recogniseDictation(SphinxDecoder& decoder, Dictation& dictation);

} // namespace corvandi
