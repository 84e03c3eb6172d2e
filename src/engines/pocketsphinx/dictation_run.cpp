#include "engines/pocketsphinx/dictation_run.h"

#include "base/error.h"
#include "engines/pocketsphinx/recognizer.h"
#include "engines/utterance_splitter.h"

namespace corvandi {
namespace {

/// Decodes utterances as they are found and reports their text.
class Transcription : public UtteranceSink {
public:
    Transcription(SphinxDecoder& decoder, const Dictation& dictation)
        : decoder_(decoder)
        , dictation_(dictation)
    {
        decoder_.beginStream();
    }

    void beginUtterance(std::chrono::milliseconds pauseBefore) override
    {
        pauseBefore_ = pauseBefore;
        decoder_.beginUtterance();
    }
    void sound(std::span<const int16_t> samples) override
    {
        if (!samples.empty())
            decoder_.feed(samples);
    }
    void endUtterance() override { report(speller_.add(decoder_.endUtterance(), pauseBefore_)); }
    void finish() { report(speller_.finish()); }

private:
    void report(const QString& text) const
    {
        if (!text.isEmpty())
            dictation_.recognised(text);
    }

    SphinxDecoder& decoder_;
    const Dictation& dictation_;
    SentenceSpeller speller_;
    std::chrono::milliseconds pauseBefore_{0};
};

} // namespace

void recogniseDictation(SphinxDecoder& decoder, Dictation& dictation)
{
    VoiceDetector detector;
    Transcription transcription(decoder, dictation);
    UtteranceSplitter splitter(transcription, [&detector](auto frame) { return detector.hears(frame); });
    while (const auto buffer = dictation.input->next()) {
        if (dictation.isCancelled)
            break;
        if (buffer->format() != engineFormat)
            throw Error(QStringLiteral("The sound is not in the format that the speech engine wants."));
        splitter.feed(buffer->int16Samples());
    }
    // Also after a cancellation: an utterance that was begun must be ended before the next one.
    splitter.finish();
    transcription.finish();
}

} // namespace corvandi
