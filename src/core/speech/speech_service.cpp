#include "core/speech/speech_service.h"

#include "base/error.h"
#include "core/speech/speech_error.h"
#include "core/speech/speech_input.h"
#include "ports/audio_buffer.h"

#include <cstdint>
#include <exception>
#include <utility>

namespace corvandi {

QCoro::Task<> TurnGate::enter()
{
    if (!std::exchange(occupied_, true))
        co_return;
    const OneShot<Done> turn;
    waiting_.push_back(turn);
    co_await turn;
}

void TurnGate::leave()
{
    if (waiting_.empty()) {
        occupied_ = false;
        return;
    }
    // The gate stays occupied: it passes from one to the next.
    queue_.async([turn = waiting_.front()] { turn.complete(Done{}); });
    waiting_.pop_front();
}

namespace {

QCoro::Task<Transcript> collectResults(std::shared_ptr<SpeechAnalyzer> analyzer, SystemLog& log)
{
    Transcript transcript;
    try {
        for (;;) {
            const std::optional<SpeechResult> result = co_await analyzer->nextResult();
            if (!result)
                break;
            if (result->isFinal)
                transcript.text += result->text;
        }
    } catch (const std::exception& error) {
        log.write(QStringLiteral("transcription stream error: ") + describe(error));
        transcript.failed = true;
    }
    co_return transcript;
}

/// Returns whether the analyzer came to its end without an error.
QCoro::Task<bool> finalize(std::shared_ptr<SpeechAnalyzer> analyzer, SystemLog& log)
{
    try {
        co_await analyzer->finalizeAndFinishThroughEndOfInput();
    } catch (const std::exception& error) {
        log.write(QStringLiteral("transcription finalize error: ") + describe(error));
        co_return false;
    }
    co_return true;
}

} // namespace

/// What the service's tasks work on: it outlives a service that is destroyed while they are suspended.
struct SpeechService::Core {
    Core(SpeechFramework& theFramework, AudioConverterFactory& theConverters, MainQueue& queue,
         SystemLog& theLog, Locale theLocale)
        : framework(theFramework)
        , converters(theConverters)
        , log(theLog)
        , locale(std::move(theLocale))
        , input(queue, theLog)
    {
    }

    static QCoro::Task<Locale> transcriptionLocale(std::shared_ptr<Core> core);
    static QCoro::Task<> ensureModel(std::shared_ptr<Core> core);
    static QCoro::Task<> start(std::shared_ptr<Core> core, AudioFormat inputFormat);
    static QCoro::Task<Transcript> finish(std::shared_ptr<Core> core);

    void requireCurrent(uint64_t dictation) const;
    void endUnfinished();
    void abandonFinishing();

    SpeechFramework& framework;
    AudioConverterFactory& converters;
    SystemLog& log;
    const Locale locale;
    SpeechInput input;
    std::shared_ptr<SpeechAnalyzer> analyzer;
    std::optional<QCoro::Task<Transcript>> results;
    /// A dictation whose text is awaited.
    struct Ending {
        std::shared_ptr<SpeechAnalyzer> analyzer;
        bool isAbandoned = false;
    };
    std::vector<std::weak_ptr<Ending>> endings;
    /// Counts the starts and their ends, so that a start that was suspended can see that it is over.
    uint64_t currentDictation = 0;
};

QCoro::Task<Locale> SpeechService::Core::transcriptionLocale(std::shared_ptr<Core> core)
{
    const std::vector<Locale> supported = co_await core->framework.supportedLocales();
    const std::optional<Locale> resolved = resolveLocale(core->locale, supported);
    if (!resolved)
        throw SpeechError::localeUnsupported(core->locale.bcp47());
    co_return *resolved;
}

QCoro::Task<> SpeechService::Core::ensureModel(std::shared_ptr<Core> core)
{
    const Locale locale = co_await transcriptionLocale(core);
    if (co_await core->framework.needsInstallation(locale))
        co_await core->framework.downloadAndInstall(locale);
}

void SpeechService::Core::requireCurrent(uint64_t dictation) const
{
    if (dictation != currentDictation)
        throw Error(QStringLiteral("the dictation ended before its transcription had started"));
}

QCoro::Task<> SpeechService::Core::start(std::shared_ptr<Core> core, AudioFormat inputFormat)
{
    const uint64_t dictation = ++core->currentDictation;
    const Locale locale = co_await transcriptionLocale(core);
    core->requireCurrent(dictation);
    core->endUnfinished();
    core->analyzer = core->framework.makeAnalyzer(locale);
    const std::optional<AudioFormat> format = co_await core->framework.bestAvailableAudioFormat(locale);
    core->requireCurrent(dictation);
    if (!format)
        throw SpeechError::noAnalyzerFormat();
    std::unique_ptr<AudioConverter> converter = core->converters.create(inputFormat, *format);
    if (!converter)
        throw SpeechError::converterUnavailable();
    const auto stream = std::make_shared<AudioStream>();
    core->input.connect(
        {std::make_shared<FormatConverter>(core->converters, inputFormat, *format, std::move(converter)),
         stream});
    // Held here too: the task of an analyzer must not outlive it.
    const std::shared_ptr<SpeechAnalyzer> analyzer = core->analyzer;
    core->results = collectResults(analyzer, core->log);
    co_await analyzer->start(stream);
    core->requireCurrent(dictation);
    core->input.drain();
}

QCoro::Task<Transcript> SpeechService::Core::finish(std::shared_ptr<Core> core)
{
    ++core->currentDictation;
    core->input.disconnect();
    const auto ending = std::make_shared<Ending>();
    ending->analyzer = std::exchange(core->analyzer, nullptr);
    std::erase_if(core->endings, [](const auto& each) { return each.expired(); });
    core->endings.push_back(ending);
    std::optional<QCoro::Task<Transcript>> results = std::exchange(core->results, std::nullopt);
    core->input.discardPending();
    Transcript transcript;
    bool finalized = true;
    if (ending->analyzer)
        finalized = co_await finalize(ending->analyzer, core->log);
    if (results)
        transcript = co_await *results;
    transcript.failed = transcript.failed || !finalized || ending->isAbandoned;
    co_return transcript;
}

void SpeechService::Core::abandonFinishing()
{
    for (const std::weak_ptr<Ending>& each : std::exchange(endings, {})) {
        const std::shared_ptr<Ending> ending = each.lock();
        if (!ending || !ending->analyzer)
            continue;
        ending->isAbandoned = true;
        ending->analyzer->cancel();
    }
}

/// Brings a dictation that nobody has finished to its end, without waiting for it.
void SpeechService::Core::endUnfinished()
{
    input.disconnect();
    results.reset();
    if (analyzer)
        const QCoro::Task<bool> ending = finalize(std::exchange(analyzer, nullptr), log);
}

SpeechService::SpeechService(SpeechFramework& framework, AudioConverterFactory& converters, MainQueue& queue,
                             SystemLog& log, Locale locale)
    : core_(std::make_shared<Core>(framework, converters, queue, log, std::move(locale)))
{
}

SpeechService::~SpeechService()
{
    ++core_->currentDictation;
    core_->endUnfinished();
}

std::optional<Locale> SpeechService::resolveLocale(const Locale& wanted, const std::vector<Locale>& supported)
{
    for (const Locale& locale : supported) {
        if (locale.bcp47() == wanted.bcp47())
            return locale;
    }
    const std::optional<QString> language = wanted.languageCode();
    if (!language)
        return std::nullopt;
    for (const Locale& locale : supported) {
        if (locale.languageCode() == language)
            return locale;
    }
    return std::nullopt;
}

QCoro::Task<> SpeechService::ensureModel()
{
    return Core::ensureModel(core_);
}

QCoro::Task<> SpeechService::start(AudioFormat inputFormat)
{
    return Core::start(core_, inputFormat);
}

void SpeechService::feed(const AudioBuffer& buffer)
{
    core_->input.feed(buffer);
}

QCoro::Task<Transcript> SpeechService::finish()
{
    return Core::finish(core_);
}

void SpeechService::abandon()
{
    // Held: those who are woken may drop the service.
    const std::shared_ptr<Core> core = core_;
    core->abandonFinishing();
}

} // namespace corvandi
