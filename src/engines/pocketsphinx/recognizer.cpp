#include "engines/pocketsphinx/recognizer.h"

#include "base/error.h"
#include "engines/pocketsphinx/model_files.h"
#include "engines/pocketsphinx/sphinx_decoder.h"

#include <atomic>
#include <chrono>
#include <utility>

namespace corvandi {

namespace {

/// What one gets used to by all the human recordings, at a usual level.
constexpr auto usualAdaptation = "50.32,-3.8,-1.3,5.5,0.75,-3.65,-2.98,-2.48,-5.05,-0.34,-5.85,-0.32,0.2";
/// How much of what the dictations before have taught is forgotten at the beginning of the next one, whose
/// speaker, microphone or distance may be another; chosen by measuring word errors over several speakers.
constexpr double forgottenShare = 0.75;

} // namespace

/// What the jobs share, on the worker's thread.
struct Recognizer::Decoding {
    Decoding(const QString& modelFolder, SystemLog& theLog, std::shared_ptr<AdaptationFile> theFile)
        : files(modelFolder)
        , log(theLog)
        , file(std::move(theFile))
    {
    }

    ModelPresence load();
    void recognise(RecognitionRun& run, const std::function<void(const QString& text)>& report);

    const ModelFiles files;
    SystemLog& log;
    const std::shared_ptr<AdaptationFile> file;
    std::unique_ptr<SphinxDecoder> decoder;
    QString adaptation = QLatin1String(usualAdaptation);
    SpeechGain gain;
    bool hasReadFile = false;
    /// The one thing that the main thread looks at, too.
    std::atomic<bool> isLoaded = false;

private:
    void readFile();
    void remember();
    void forgetDecoder();
    UtteranceDecoder& replaceDecoder(const QString& failure);

    /// Away from the decoder, which the next dictation may be waiting for.
    Worker writer_{QStringLiteral("speech memory"), Worker::AtEnd::finish, std::chrono::seconds(1)};
};

ModelPresence Recognizer::Decoding::load()
{
    if (decoder)
        return ModelPresence::loaded;
    if (!files.arePresent())
        return ModelPresence::notInstalled;
    files.verify();
    decoder = std::make_unique<SphinxDecoder>(files);
    if (!std::exchange(hasReadFile, true))
        readFile();
    (void)decoder->adapt(adaptation);
    isLoaded = true;
    return ModelPresence::loaded;
}

void Recognizer::Decoding::readFile()
{
    if (!file)
        return;
    const Adaptation remembered = file->read();
    if (remembered.engine.isEmpty())
        return;
    if (!decoder->adapt(remembered.engine)) {
        log.write(QStringLiteral("what the speech engine had learned is not this engine's"));
        return;
    }
    adaptation = remembered.engine;
    gain = SpeechGain(remembered.speechLevel);
}

void Recognizer::Decoding::remember()
{
    adaptation = decoder->adaptation();
    if (!file)
        return;
    writer_.post([file = file, learned = Adaptation{adaptation, gain.level()}](const std::stop_token&) {
        file->write(learned);
    });
}

void Recognizer::Decoding::recognise(RecognitionRun& run,
                                     const std::function<void(const QString& text)>& report)
{
    if (load() == ModelPresence::notInstalled)
        throw Error(modelMissingDescription());
    decoder->returnTowards(QLatin1String(usualAdaptation), forgottenShare);
    bool hasWords = false;
    try {
        run.recognise(
            {*decoder, [this](const QString& why) -> UtteranceDecoder& { return replaceDecoder(why); }, gain},
            [&](const QString& text) {
                hasWords = true;
                report(text);
            });
    } catch (...) {
        // It may be in the middle of an utterance, or worse: the next run gets a new one.
        forgetDecoder();
        throw;
    }
    // Noise alone is nothing to get used to.
    if (hasWords)
        remember();
}

void Recognizer::Decoding::forgetDecoder()
{
    isLoaded = false;
    decoder.reset();
}

UtteranceDecoder& Recognizer::Decoding::replaceDecoder(const QString& failure)
{
    log.write(QStringLiteral("the speech engine failed and is started again: ") + failure);
    forgetDecoder();
    if (load() == ModelPresence::notInstalled)
        throw Error(modelMissingDescription());
    return *decoder;
}

Recognizer::Recognizer(const QString& modelFolder, MainQueue& queue, SystemLog& log,
                       std::shared_ptr<AdaptationFile> file)
    : queue_(queue)
    , decoding_(std::make_shared<Decoding>(modelFolder, log, std::move(file)))
    , mailbox_(queue)
{
}

Recognizer::~Recognizer()
{
    // Later, as those who wait may do anything. What the worker still posts goes with the mailbox.
    queue_.async([loads = std::move(loads_), runs = std::move(results_)] {
        const auto failure =
            std::make_exception_ptr(Error(QStringLiteral("The speech engine has been shut down.")));
        for (const auto& load : loads)
            load.fail(failure);
        for (const auto& each : runs) {
            if (const auto results = each.lock())
                results->end(failure);
        }
    });
}

OneShot<ModelPresence> Recognizer::load()
{
    OneShot<ModelPresence> outcome;
    if (decoding_->isLoaded) {
        outcome.complete(ModelPresence::loaded);
        return outcome;
    }
    std::erase_if(loads_, [](const auto& load) { return load.isCompleted(); });
    loads_.push_back(outcome);
    worker_.post([decoding = decoding_, outcome, address = mailbox_.address()](const std::stop_token&) {
        try {
            const ModelPresence presence = decoding->load();
            address.post([outcome, presence] { outcome.complete(presence); });
        } catch (...) {
            address.post([outcome, failure = std::current_exception()] { outcome.fail(failure); });
        }
    });
    return outcome;
}

void Recognizer::recognise(std::shared_ptr<RecognitionRun> run, const std::shared_ptr<ResultChannel>& results)
{
    std::erase_if(results_, [](const auto& each) { return each.expired(); });
    results_.push_back(results);
    worker_.post([decoding = decoding_, run = std::move(run), results,
                  address = mailbox_.address()](const std::stop_token& stop) {
        const std::stop_callback cancelling(stop, [&run] { run->cancel(); });
        std::exception_ptr failure;
        try {
            decoding->recognise(*run, [&](const QString& text) {
                address.post([results, text] { results->push({text, true}); });
            });
        } catch (...) {
            failure = std::current_exception();
        }
        address.post([results, failure] { results->end(failure); });
    });
}

} // namespace corvandi
