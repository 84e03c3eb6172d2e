#pragma once

#include "engines/pocketsphinx/model_files.h"
#include "engines/shared/utterance_decoder.h"

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
class SphinxDecoder : public UtteranceDecoder {
public:
    /// Loads the model, which takes 0.3 s. Throws `Error` when that fails.
    explicit SphinxDecoder(const ModelFiles& files);
    ~SphinxDecoder() override;
    SphinxDecoder(const SphinxDecoder&) = delete;
    SphinxDecoder& operator=(const SphinxDecoder&) = delete;

    /// What it has got used to, in words for `adapt`: the mean of the sound's spectrum.
    [[nodiscard]] QString adaptation() const;
    /// Gets used at once to what another decoder had got used to. False, and nothing changes, when
    /// `adaptation` is not what one says. Not within an utterance.
    [[nodiscard]] bool adapt(const QString& adaptation);
    /// Forgets some of what it has got used to: goes the share of the way (0 to 1) back to `usual`, which is
    /// one of `adaptation`'s. Not within an utterance.
    void returnTowards(const QString& usual, double share);

    void beginStream() override;
    void beginUtterance() override;
    void feed(std::span<const int16_t> samples) override;
    [[nodiscard]] QString endUtterance() override;
    void dropUtterance() override;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace corvandi
