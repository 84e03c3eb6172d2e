#include "engines/pocketsphinx/recognizer.h"

#include "base/error.h"
#include "engines/pocketsphinx/model_files.h"

#include <atomic>
#include <utility>

namespace corvandi {

/// What the jobs share, on the worker's thread.
struct Recognizer::Decoding {
    explicit Decoding(const QString& modelFolder)
        : files(modelFolder)
    {
    }

    ModelPresence load();
    void recognise(RecognitionRun& run, const std::function<void(const QString& text)>& report);

    const ModelFiles files;
    std::unique_ptr<SphinxDecoder> decoder;
    /// The one thing that the main thread looks at, too.
    std::atomic<bool> isLoaded = false;
};

ModelPresence Recognizer::Decoding::load()
{
    if (decoder)
        return ModelPresence::loaded;
    if (!files.arePresent())
        return ModelPresence::notInstalled;
    files.verify();
    decoder = std::make_unique<SphinxDecoder>(files);
    isLoaded = true;
    return ModelPresence::loaded;
}

void Recognizer::Decoding::recognise(RecognitionRun& run,
                                     const std::function<void(const QString& text)>& report)
{
    if (load() == ModelPresence::notInstalled)
        throw Error(modelMissingDescription());
    try {
        run.recognise(*decoder, report);
    } catch (...) {
        // It may be in the middle of an utterance, or worse: the next run gets a new one.
        isLoaded = false;
        decoder.reset();
        throw;
    }
}

Recognizer::Recognizer(const QString& modelFolder, MainQueue& queue)
    : queue_(queue)
    , decoding_(std::make_shared<Decoding>(modelFolder))
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
