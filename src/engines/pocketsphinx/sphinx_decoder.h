#pragma once

#include "engines/pocketsphinx/model_files.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <span>

namespace corvandi {

/// The recognition library with a model in memory (95 MB for English). It adapts to voice and
/// microphone, and keeps that from one utterance to the next: keep it as long as you can.
///
/// Where the library would end the whole program, the operation throws `Error` instead; the decoder
/// cannot be used any more after that, and what it holds stays allocated.
///
/// Thread: one at a time, any. Sound is 16 kHz, mono.
class SphinxDecoder {
public:
    /// Loads the model, which takes 0.3 s. Throws `Error` when that fails.
    explicit SphinxDecoder(const ModelFiles& files);
    ~SphinxDecoder();
    SphinxDecoder(const SphinxDecoder&) = delete;
    SphinxDecoder& operator=(const SphinxDecoder&) = delete;

    /// Announces sound that has nothing to do with what came before.
    void beginStream();
    void beginUtterance();
    void feed(std::span<const int16_t> samples);
    /// The words of the utterance, in lower case and separated by spaces; empty when there are none.
    [[nodiscard]] QString endUtterance();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace corvandi
