#include "engines/shared/recognition_run.h"

#include "base/error.h"
#include "engines/shared/utterance_splitter.h"
#include "engines/shared/voice_detector.h"

#include <QStringList>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

/// Readers pause for 300 to 500 ms within a sentence and longer between two.
constexpr auto sentencePause = 700ms;

QString spellWord(const QString& word)
{
    // Also "i'm", "i'll", "i'd", "i've".
    if (word == QLatin1String("i") || word.startsWith(QLatin1String("i'")))
        return QLatin1Char('I') + word.mid(1);
    return word;
}

QString capitalized(const QString& text)
{
    return text.left(1).toUpper() + text.mid(1);
}

} // namespace

QString SentenceSpeller::add(const QString& words, std::chrono::milliseconds pauseBefore)
{
    pause_ += pauseBefore;
    QStringList spelled;
    for (const QString& word : words.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        spelled << spellWord(word);
    if (spelled.isEmpty())
        return {};
    const auto pause = std::exchange(pause_, 0ms);
    const bool beginsSentence = !hasText_ || pause >= sentencePause;
    const QString text = spelled.join(QLatin1Char(' '));
    const QString lead = separator(pause);
    hasText_ = true;
    return lead + (beginsSentence ? capitalized(text) : text);
}

QString SentenceSpeller::finish()
{
    return std::exchange(hasText_, false) ? QStringLiteral(".") : QString();
}

QString SentenceSpeller::separator(std::chrono::milliseconds pauseBefore) const
{
    if (!hasText_)
        return {};
    return pauseBefore >= sentencePause ? QStringLiteral(". ") : QStringLiteral(" ");
}

namespace {

/// Decodes utterances as they are found and reports their text.
class Transcription : public UtteranceSink {
public:
    Transcription(const RecognitionRun::Engine& engine, const std::function<void(const QString&)>& report,
                  const std::atomic<bool>& isCancelled)
        : decoder_(engine.decoder, engine.replace, isCancelled)
        , gain_(engine.gain)
        , report_(report)
        , isCancelled_(isCancelled)
    {
        gain_.beginDictation();
        decoder_.beginStream();
    }

    [[nodiscard]] bool hears(std::span<const int16_t> frame)
    {
        const bool isVoice = !isCancelled_ && detector_.hears(frame);
        if (isVoice)
            gain_.learn(frame);
        return isVoice;
    }

    void beginUtterance(std::chrono::milliseconds pauseBefore) override
    {
        pauseBefore_ = pauseBefore;
        decoder_.beginUtterance();
    }
    void sound(std::span<const int16_t> samples) override
    {
        if (!samples.empty() && !isCancelled_)
            decoder_.feed(gain_.apply(samples));
    }
    void endUtterance() override
    {
        // Also after a cancellation: an utterance that was begun must be ended before the next one.
        if (isCancelled_)
            decoder_.dropUtterance();
        else
            report(speller_.add(decoder_.endUtterance(), pauseBefore_));
    }
    void finish() { report(speller_.finish()); }

private:
    void report(const QString& text) const
    {
        if (!text.isEmpty())
            report_(text);
    }

    RetryingDecoder decoder_;
    SpeechGain& gain_;
    VoiceDetector detector_;
    const std::function<void(const QString&)>& report_;
    const std::atomic<bool>& isCancelled_;
    SentenceSpeller speller_;
    std::chrono::milliseconds pauseBefore_{0};
};

} // namespace

void RecognitionRun::recognise(const Engine& engine, const std::function<void(const QString& text)>& report)
{
    Transcription transcription(engine, report, isCancelled_);
    UtteranceSplitter splitter(transcription,
                               [&transcription](auto frame) { return transcription.hears(frame); });
    while (const auto buffer = input_->next()) {
        if (isCancelled_)
            break;
        if (buffer->format() != engineFormat)
            throw Error(QStringLiteral("The sound is not in the format that the speech engine wants."));
        splitter.feed(buffer->int16Samples());
    }
    splitter.finish();
    transcription.finish();
}

void RecognitionRun::cancel()
{
    isCancelled_ = true;
    input_->finish();
}

} // namespace corvandi
