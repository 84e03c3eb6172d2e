#include "support/fake_speech_framework.h"

#include <deque>
#include <utility>

namespace corvandi::testing {

class FakeSpeechFramework::Transcriber : public SpeechTranscriber {
public:
    struct Event {
        std::optional<SpeechResult> result;
        std::optional<QString> failure;
    };

    explicit Transcriber(Locale locale)
        : locale_(std::move(locale))
    {
    }

    [[nodiscard]] const Locale& locale() const { return locale_; }

    void push(Event event)
    {
        events_.push_back(std::move(event));
        const OneShot<Done> arrival = std::exchange(arrival_, {});
        arrival.complete(Done{});
    }

    QCoro::Task<std::optional<SpeechResult>> nextResult() override
    {
        if (events_.empty()) {
            const OneShot<Done> arrival = arrival_;
            co_await arrival;
        }
        Event event = std::move(events_.front());
        events_.pop_front();
        if (event.failure)
            throw Error(*event.failure);
        co_return event.result;
    }

private:
    Locale locale_;
    std::deque<Event> events_;
    OneShot<Done> arrival_;
};

class FakeSpeechFramework::Analyzer : public SpeechAnalyzer {
public:
    Analyzer(FakeSpeechFramework& framework, std::shared_ptr<Transcriber> transcriber,
             std::shared_ptr<Dictation> dictation)
        : framework_(framework)
        , transcriber_(std::move(transcriber))
        , dictation_(std::move(dictation))
    {
    }

    QCoro::Task<> start(std::shared_ptr<AudioStream> input) override
    {
        co_await framework_.starting.run();
        input_ = std::move(input);
        dictation_->wasStarted = true;
    }

    QCoro::Task<> finalizeAndFinishThroughEndOfInput() override
    {
        dictation_->wasFinalized = true;
        while (input_) {
            std::optional<AudioBuffer> buffer = input_->next();
            if (!buffer)
                break;
            dictation_->received.push_back(std::move(*buffer));
        }
        co_await framework_.finalizing.run();
        if (framework_.finalizingEndsResults || !input_)
            transcriber_->push({});
    }

private:
    FakeSpeechFramework& framework_;
    std::shared_ptr<Transcriber> transcriber_;
    std::shared_ptr<Dictation> dictation_;
    std::shared_ptr<AudioStream> input_;
};

class FakeSpeechFramework::Request : public AssetInstallationRequest {
public:
    explicit Request(FakeSpeechFramework& framework)
        : framework_(framework)
    {
    }

    QCoro::Task<> downloadAndInstall() override
    {
        co_await framework_.downloading.run();
        framework_.modelIsInstalled = true;
    }

private:
    FakeSpeechFramework& framework_;
};

FakeSpeechFramework::FakeSpeechFramework() = default;
FakeSpeechFramework::~FakeSpeechFramework() = default;

void FakeSpeechFramework::pushFinal(const QString& text)
{
    latestTranscriber_->push({SpeechResult{text, true}, std::nullopt});
}

void FakeSpeechFramework::pushVolatile(const QString& text)
{
    latestTranscriber_->push({SpeechResult{text, false}, std::nullopt});
}

void FakeSpeechFramework::endResults()
{
    latestTranscriber_->push({});
}

void FakeSpeechFramework::failResults(const QString& description)
{
    latestTranscriber_->push({std::nullopt, description});
}

void FakeSpeechFramework::endAllResults()
{
    for (const std::weak_ptr<Transcriber>& transcriber : transcribers_) {
        if (const auto living = transcriber.lock())
            living->push({});
    }
}

QCoro::Task<std::vector<Locale>> FakeSpeechFramework::supportedLocales()
{
    co_await listing.run();
    // A copy: a task moves what it returns, even out of a member.
    std::vector<Locale> listed = locales;
    co_return listed;
}

std::shared_ptr<SpeechTranscriber> FakeSpeechFramework::makeTranscriber(const Locale& locale)
{
    transcriberLocales_.push_back(locale);
    return std::make_shared<Transcriber>(locale);
}

std::shared_ptr<SpeechAnalyzer>
FakeSpeechFramework::makeAnalyzer(std::shared_ptr<SpeechTranscriber> transcriber)
{
    latestTranscriber_ = std::static_pointer_cast<Transcriber>(std::move(transcriber));
    transcribers_.push_back(latestTranscriber_);
    const Locale& locale = latestTranscriber_->locale();
    dictations_.push_back(std::make_shared<Dictation>(Dictation{locale, false, false, {}}));
    return std::make_shared<Analyzer>(*this, latestTranscriber_, dictations_.back());
}

QCoro::Task<std::unique_ptr<AssetInstallationRequest>>
FakeSpeechFramework::assetInstallationRequest(std::shared_ptr<SpeechTranscriber> /*transcriber*/)
{
    co_await inventory.run();
    std::unique_ptr<AssetInstallationRequest> request;
    if (!modelIsInstalled)
        request = std::make_unique<Request>(*this);
    co_return request;
}

QCoro::Task<std::optional<AudioFormat>>
FakeSpeechFramework::bestAvailableAudioFormat(std::shared_ptr<SpeechTranscriber> /*transcriber*/)
{
    co_await formatQuery.run();
    co_return format;
}

} // namespace corvandi::testing
