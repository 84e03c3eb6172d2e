#include "engines/pocketsphinx/pocketsphinx_framework.h"

#include "base/error.h"
#include "engines/pocketsphinx/model_files.h"
#include "engines/pocketsphinx/recognizer.h"
#include "engines/utterance_splitter.h"

namespace corvandi {
namespace {

std::shared_ptr<Recognizer> lock(const std::weak_ptr<Recognizer>& engine)
{
    std::shared_ptr<Recognizer> locked = engine.lock();
    if (!locked)
        throw Error(QStringLiteral("The speech engine has been shut down."));
    return locked;
}

class Transcriber : public SpeechTranscriber {
public:
    QCoro::Task<std::optional<SpeechResult>> nextResult() override { return ResultChannel::next(results_); }

    [[nodiscard]] const std::shared_ptr<ResultChannel>& results() const { return results_; }

private:
    std::shared_ptr<ResultChannel> results_ = std::make_shared<ResultChannel>();
};

/// Brings the model into memory; throws when the engine is gone or the model can't be used.
QCoro::Task<ModelPresence> load(std::weak_ptr<Recognizer> engine)
{
    // Not held while waiting: the framework decides how long the engine lives.
    const OneShot<ModelPresence> loading = lock(engine)->load();
    const ModelPresence presence = co_await loading;
    co_return presence;
}

class Analyzer : public SpeechAnalyzer, public std::enable_shared_from_this<Analyzer> {
public:
    Analyzer(std::shared_ptr<ResultChannel> results, std::weak_ptr<Recognizer> engine)
        : results_(std::move(results))
        , engine_(std::move(engine))
    {
    }
    ~Analyzer() override
    {
        if (run_)
            run_->cancel();
    }
    Analyzer(const Analyzer&) = delete;
    Analyzer& operator=(const Analyzer&) = delete;

    QCoro::Task<> start(std::shared_ptr<AudioStream> input) override
    {
        const std::shared_ptr<Analyzer> self = shared_from_this();
        const ModelPresence presence = co_await load(engine_);
        if (presence == ModelPresence::notInstalled)
            throw Error(modelMissingDescription());
        run_ = std::make_shared<RecognitionRun>(std::move(input));
        lock(engine_)->recognise(run_, results_);
    }

    QCoro::Task<> finalizeAndFinishThroughEndOfInput() override
    {
        if (!run_)
            results_->end(nullptr);
        const OneShot<Done> ended = results_->ended();
        co_await ended;
    }

private:
    std::shared_ptr<ResultChannel> results_;
    std::weak_ptr<Recognizer> engine_;
    std::shared_ptr<RecognitionRun> run_;
};

/// The model comes from the distribution; this program can't install it.
class MissingModel : public AssetInstallationRequest {
public:
    QCoro::Task<> downloadAndInstall() override
    {
        throw Error(modelMissingDescription());
        co_return;
    }
};

} // namespace

PocketSphinxFramework::PocketSphinxFramework(const QString& modelFolder, MainQueue& queue)
    : engine_(std::make_shared<Recognizer>(modelFolder, queue))
{
}

PocketSphinxFramework::~PocketSphinxFramework() = default;

QCoro::Task<std::vector<Locale>> PocketSphinxFramework::supportedLocales()
{
    std::vector<Locale> locales{Locale(QStringLiteral("en-US"))};
    co_return locales;
}

std::shared_ptr<SpeechTranscriber> PocketSphinxFramework::makeTranscriber(const Locale&)
{
    return std::make_shared<Transcriber>();
}

std::shared_ptr<SpeechAnalyzer>
PocketSphinxFramework::makeAnalyzer(std::shared_ptr<SpeechTranscriber> transcriber)
{
    const auto own = std::dynamic_pointer_cast<Transcriber>(transcriber);
    return own ? std::make_shared<Analyzer>(own->results(), engine_) : nullptr;
}

QCoro::Task<std::unique_ptr<AssetInstallationRequest>>
PocketSphinxFramework::assetInstallationRequest(std::shared_ptr<SpeechTranscriber>)
{
    std::unique_ptr<AssetInstallationRequest> request;
    const ModelPresence presence = co_await load(engine_);
    if (presence == ModelPresence::notInstalled)
        request = std::make_unique<MissingModel>();
    co_return request;
}

QCoro::Task<std::optional<AudioFormat>>
PocketSphinxFramework::bestAvailableAudioFormat(std::shared_ptr<SpeechTranscriber>)
{
    co_return engineFormat;
}

} // namespace corvandi
