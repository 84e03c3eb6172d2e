#pragma once

#include <QString>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace corvandi {

/// What an engine is at heart: it turns one utterance after the other into words. Operations throw `Error`
/// when the engine fails; the decoder is not used any more after that.
///
/// Thread: one at a time, any. Sound is 16 kHz, mono.
class UtteranceDecoder {
public:
    virtual ~UtteranceDecoder() = default;

    /// Announces sound that has nothing to do with what came before.
    virtual void beginStream() = 0;
    virtual void beginUtterance() = 0;
    virtual void feed(std::span<const int16_t> samples) = 0;
    /// The words of the utterance, in lower case and separated by spaces; empty when there are none.
    [[nodiscard]] virtual QString endUtterance() = 0;
    /// Ends the utterance for somebody who does not want its words, which is quicker.
    virtual void dropUtterance() = 0;
};

/// Decodes one dictation and survives one failure of the engine: a fresh decoder is given the utterance in
/// which it happened, from its beginning, and goes on. The words of the utterances before have been handed
/// out, so nothing comes twice. A second failure is thrown.
///
/// It holds the sound of one utterance, which the splitter keeps under 23 seconds: at most 0.8 MB.
class RetryingDecoder : public UtteranceDecoder {
public:
    /// Replaces the decoder that has failed, for the reason given; throws when there can't be another one.
    using Replace = std::function<UtteranceDecoder&(const QString& failure)>;

    /// `decoder` outlives this one unless it is replaced. Once `isCancelled`, which any thread may set,
    /// nothing is tried again.
    RetryingDecoder(UtteranceDecoder& decoder, Replace replace, const std::atomic<bool>& isCancelled);

    void beginStream() override;
    void beginUtterance() override;
    void feed(std::span<const int16_t> samples) override;
    [[nodiscard]] QString endUtterance() override;
    void dropUtterance() override;

private:
    template<class Operation>
    void attempt(const Operation& operation);
    void startAgain(const QString& failure);

    UtteranceDecoder* decoder_;
    Replace replace_;
    const std::atomic<bool>& isCancelled_;
    /// What the utterance that is going on has had so far.
    std::vector<int16_t> sound_;
    bool isInUtterance_ = false;
    bool hasRetried_ = false;
};

} // namespace corvandi
