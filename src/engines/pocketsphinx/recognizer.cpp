#include "engines/pocketsphinx/recognizer.h"

#include "base/error.h"

#include <utility>

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

std::exception_ptr engineHasEnded()
{
    return std::make_exception_ptr(Error(QStringLiteral("The speech engine has been shut down.")));
}

} // namespace

Recognizer::Recognizer(const QString& modelFolder, MainQueue& queue)
    : files_(modelFolder)
    , queue_(queue)
{
}

Recognizer::~Recognizer()
{
    for (const auto& each : dictations_) {
        if (const auto dictation = each.lock()) {
            dictation->cancel();
            // For those whose turn will not come; an end that follows is ignored.
            dictation->ended(engineHasEnded());
        }
    }
    queue_.async([loads = loads_] {
        for (const auto& load : loads)
            load.fail(engineHasEnded());
    });
}

OneShot<ModelPresence> Recognizer::load()
{
    OneShot<ModelPresence> outcome;
    if (isLoaded_) {
        outcome.complete(ModelPresence::loaded);
        return outcome;
    }
    std::erase_if(loads_, [](const auto& load) { return load.isCompleted(); });
    loads_.push_back(outcome);
    thread_.post([this, outcome] {
        try {
            const ModelPresence presence = loadDecoder();
            queue_.async([outcome, presence] { outcome.complete(presence); });
        } catch (...) {
            queue_.async([outcome, failure = std::current_exception()] { outcome.fail(failure); });
        }
    });
    return outcome;
}

void Recognizer::recognise(const std::shared_ptr<Dictation>& dictation)
{
    std::erase_if(dictations_, [](const auto& each) { return each.expired(); });
    dictations_.push_back(dictation);
    thread_.post([this, dictation] { recogniseNow(*dictation); });
}

ModelPresence Recognizer::loadDecoder()
{
    if (decoder_)
        return ModelPresence::loaded;
    if (!files_.arePresent())
        return ModelPresence::notInstalled;
    files_.verify();
    decoder_ = std::make_unique<SphinxDecoder>(files_);
    isLoaded_ = true;
    return ModelPresence::loaded;
}

void Recognizer::recogniseNow(Dictation& dictation)
{
    try {
        if (loadDecoder() == ModelPresence::notInstalled)
            throw Error(modelMissingDescription());
        recogniseDictation(*decoder_, dictation);
        dictation.ended(nullptr);
    } catch (...) {
        // It may be in the middle of an utterance, or worse: the next dictation gets a new one.
        isLoaded_ = false;
        decoder_.reset();
        dictation.ended(std::current_exception());
    }
}

} // namespace corvandi
