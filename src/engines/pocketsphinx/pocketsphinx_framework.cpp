#include "engines/pocketsphinx/pocketsphinx_framework.h"

#include "base/error.h"
#include "engines/pocketsphinx/model_files.h"
#include "engines/pocketsphinx/recognizer.h"
#include "engines/shared/utterance_splitter.h"

namespace corvandi {
namespace {

std::shared_ptr<Recognizer> lock(const std::weak_ptr<Recognizer>& engine)
{
    std::shared_ptr<Recognizer> locked = engine.lock();
    if (!locked)
        throw Error(QStringLiteral("The speech engine has been shut down."));
    return locked;
}

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
    explicit Analyzer(std::weak_ptr<Recognizer> engine)
        : engine_(std::move(engine))
    {
    }
    ~Analyzer() override { giveUp(); }
    Analyzer(const Analyzer&) = delete;
    Analyzer& operator=(const Analyzer&) = delete;

    QCoro::Task<> start(std::shared_ptr<AudioStream> input) override
    {
        const std::shared_ptr<Analyzer> self = shared_from_this();
        const ModelPresence presence = co_await load(engine_);
        if (presence == ModelPresence::notInstalled)
            throw Error(modelMissingDescription());
        if (isGivenUp_)
            co_return;
        run_ = std::make_shared<RecognitionRun>(std::move(input));
        lock(engine_)->recognise(run_, results_);
    }

    QCoro::Task<std::optional<SpeechResult>> nextResult() override { return ResultChannel::next(results_); }

    QCoro::Task<> finalizeAndFinishThroughEndOfInput() override
    {
        if (!run_)
            results_->end(nullptr);
        const OneShot<Done> ended = results_->ended();
        co_await ended;
    }

    void cancel() override { giveUp(); }

private:
    void giveUp()
    {
        isGivenUp_ = true;
        if (run_)
            run_->cancel();
        // At once: the engine may have other dictations to do before it sees this one. Held, as those who
        // are woken may drop this.
        const std::shared_ptr<ResultChannel> results = results_;
        results->end(nullptr);
    }

    std::weak_ptr<Recognizer> engine_;
    const std::shared_ptr<ResultChannel> results_ = std::make_shared<ResultChannel>();
    std::shared_ptr<RecognitionRun> run_;
    bool isGivenUp_ = false;
};

} // namespace

PocketSphinxFramework::PocketSphinxFramework(const QString& modelFolder, MainQueue& queue, SystemLog& log,
                                             std::shared_ptr<AdaptationFile> adaptation)
    : engine_(std::make_shared<Recognizer>(modelFolder, queue, log, std::move(adaptation)))
{
}

PocketSphinxFramework::~PocketSphinxFramework() = default;

QCoro::Task<std::vector<Locale>> PocketSphinxFramework::supportedLocales()
{
    std::vector<Locale> locales{Locale(QStringLiteral("en-US"))};
    co_return locales;
}

QCoro::Task<bool> PocketSphinxFramework::needsInstallation(Locale /*locale*/)
{
    const ModelPresence presence = co_await load(engine_);
    co_return presence == ModelPresence::notInstalled;
}

QCoro::Task<> PocketSphinxFramework::downloadAndInstall(Locale /*locale*/)
{
    throw Error(modelMissingDescription());
    co_return;
}

QCoro::Task<std::optional<AudioFormat>> PocketSphinxFramework::bestAvailableAudioFormat(Locale /*locale*/)
{
    co_return engineFormat;
}

std::shared_ptr<SpeechAnalyzer> PocketSphinxFramework::makeAnalyzer(const Locale& /*locale*/)
{
    return std::make_shared<Analyzer>(engine_);
}

} // namespace corvandi
