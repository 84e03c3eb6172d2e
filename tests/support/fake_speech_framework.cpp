#include "support/fake_speech_framework.h"

#include <deque>
#include <utility>

namespace corvandi::testing {

/// What an analyzer gives out: results, then their end or why they fail.
class FakeSpeechFramework::Results {
public:
    struct Event {
        std::optional<SpeechResult> result;
        std::optional<QString> failure;
    };

    void push(Event event)
    {
        events_.push_back(std::move(event));
        const OneShot<Done> arrival = std::exchange(arrival_, {});
        arrival.complete(Done{});
    }

    static QCoro::Task<std::optional<SpeechResult>> next(std::shared_ptr<Results> self)
    {
        if (self->events_.empty()) {
            const OneShot<Done> arrival = self->arrival_;
            co_await arrival;
        }
        Event event = std::move(self->events_.front());
        self->events_.pop_front();
        if (event.failure)
            throw Error(*event.failure);
        co_return event.result;
    }

private:
    std::deque<Event> events_;
    OneShot<Done> arrival_;
};

class FakeSpeechFramework::Analyzer : public SpeechAnalyzer {
public:
    Analyzer(FakeSpeechFramework& framework, std::shared_ptr<Results> results,
             std::shared_ptr<Dictation> dictation)
        : framework_(framework)
        , results_(std::move(results))
        , dictation_(std::move(dictation))
    {
    }
    ~Analyzer() override { results_->push({}); }
    Analyzer(const Analyzer&) = delete;
    Analyzer& operator=(const Analyzer&) = delete;

    QCoro::Task<> start(std::shared_ptr<AudioStream> input) override
    {
        co_await framework_.starting.run();
        input_ = std::move(input);
        dictation_->wasStarted = true;
    }

    QCoro::Task<std::optional<SpeechResult>> nextResult() override { return Results::next(results_); }

    QCoro::Task<> finalizeAndFinishThroughEndOfInput() override
    {
        dictation_->wasFinalized = true;
        if (input_)
            readInput();
        const OneShot<Done> over = over_;
        const QCoro::Task<> step = finalize(framework_.finalizing, over);
        co_await over;
        if (framework_.finalizingEndsResults || !input_)
            results_->push({});
    }

    void cancel() override
    {
        dictation_->wasCancelled = true;
        results_->push({});
        over_.complete(Done{});
    }

private:
    static QCoro::Task<> finalize(ScriptedStep& step, OneShot<Done> over)
    {
        try {
            co_await step.run();
            over.complete(Done{});
        } catch (...) {
            over.fail(std::current_exception());
        }
    }
    void readInput()
    {
        while (std::optional<AudioBuffer> buffer = input_->next()) {
            if (framework_.recognise)
                results_->push({SpeechResult{framework_.recognise(*buffer), true}, std::nullopt});
            dictation_->received.push_back(std::move(*buffer));
        }
    }

    FakeSpeechFramework& framework_;
    std::shared_ptr<Results> results_;
    std::shared_ptr<Dictation> dictation_;
    std::shared_ptr<AudioStream> input_;
    /// Completed by the finalization or by the cancellation.
    OneShot<Done> over_;
};

FakeSpeechFramework::FakeSpeechFramework() = default;
FakeSpeechFramework::~FakeSpeechFramework() = default;

void FakeSpeechFramework::pushFinal(const QString& text)
{
    results_.back()->push({SpeechResult{text, true}, std::nullopt});
}

void FakeSpeechFramework::pushVolatile(const QString& text)
{
    results_.back()->push({SpeechResult{text, false}, std::nullopt});
}

void FakeSpeechFramework::endResults()
{
    results_.back()->push({});
}

void FakeSpeechFramework::failResults(const QString& description)
{
    results_.back()->push({std::nullopt, description});
}

void FakeSpeechFramework::endAllResults()
{
    for (const std::shared_ptr<Results>& results : results_)
        results->push({});
}

QCoro::Task<std::vector<Locale>> FakeSpeechFramework::supportedLocales()
{
    co_await listing.run();
    // A copy: a task moves what it returns, even out of a member.
    std::vector<Locale> listed = locales;
    co_return listed;
}

QCoro::Task<bool> FakeSpeechFramework::needsInstallation(Locale locale)
{
    usedLocales_.push_back(locale);
    co_await inventory.run();
    co_return !modelIsInstalled;
}

QCoro::Task<> FakeSpeechFramework::downloadAndInstall(Locale locale)
{
    usedLocales_.push_back(locale);
    co_await downloading.run();
    modelIsInstalled = true;
}

QCoro::Task<std::optional<AudioFormat>> FakeSpeechFramework::bestAvailableAudioFormat(Locale /*locale*/)
{
    co_await formatQuery.run();
    co_return format;
}

std::shared_ptr<SpeechAnalyzer> FakeSpeechFramework::makeAnalyzer(const Locale& locale)
{
    usedLocales_.push_back(locale);
    results_.push_back(std::make_shared<Results>());
    dictations_.push_back(std::make_shared<Dictation>(Dictation{locale, false, false, false, {}}));
    return std::make_shared<Analyzer>(*this, results_.back(), dictations_.back());
}

} // namespace corvandi::testing
