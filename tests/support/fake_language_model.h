#pragma once

#include "base/main_queue.h"
#include "ports/language_model.h"

#include <optional>
#include <utility>
#include <vector>

namespace corvandi::testing {

/// A language model that answers when the test says so. A look at it is done in the next turn of the
/// queue, or when the test says so.
class FakeLanguageModel : public LanguageModel {
public:
    explicit FakeLanguageModel(MainQueue& queue)
        : queue_(queue)
    {
    }

    /// What a look at the model finds.
    LanguageModelAvailability state = LanguageModelAvailability::available;
    /// Looks wait for `endLooks`.
    bool looksAreHeld = false;
    int looks = 0;
    /// What it is called, when a look finds it.
    std::optional<QString> name;
    int warmUps = 0;
    /// The instructions of every conversation and the texts sent, in order.
    std::vector<QString> instructions;
    std::vector<QString> prompts;
    /// Conversations that are still open.
    int sessions = 0;

    [[nodiscard]] LanguageModelAvailability availability() override { return known_; }
    [[nodiscard]] std::unique_ptr<Registration> refreshAvailability(std::function<void()> done) override
    {
        ++looks;
        return std::make_unique<Look>(*this, std::move(done));
    }
    [[nodiscard]] std::optional<QString> modelName() override
    {
        return known_ == LanguageModelAvailability::available ? name : std::nullopt;
    }
    void warmUp() override
    {
        ++warmUps;
        if (!looksAreHeld)
            known_ = state;
    }
    [[nodiscard]] std::unique_ptr<LanguageModelSession> makeSession(const QString& text) override
    {
        instructions.push_back(text);
        return std::make_unique<Session>(*this);
    }

    /// Ends the looks that wait, and lets later ones end by themselves again.
    void endLooks()
    {
        looksAreHeld = false;
        for (Look* look : std::exchange(waiting_, {}))
            look->end();
    }
    [[nodiscard]] bool isLookedAt() const { return !waiting_.empty(); }

    /// Whether a question waits for its answer.
    [[nodiscard]] bool isAsked() const { return pending_ != nullptr; }
    /// Answers the open question, if it has not been abandoned.
    void answer(const LanguageModelAnswer& text)
    {
        if (const auto done = std::exchange(pending_, nullptr))
            done(text);
    }

private:
    class Look : public Registration {
    public:
        Look(FakeLanguageModel& model, std::function<void()> done)
            : model_(model)
            , done_(std::move(done))
        {
            if (model_.looksAreHeld)
                model_.waiting_.push_back(this);
            else
                end();
        }
        ~Look() override { std::erase(model_.waiting_, this); }
        Look(const Look&) = delete;
        Look& operator=(const Look&) = delete;

        void end()
        {
            turn_ = model_.queue_.after({}, [this] {
                model_.known_ = model_.state;
                // It may destroy this look.
                const auto call = std::move(done_);
                call();
            });
        }

    private:
        FakeLanguageModel& model_;
        std::function<void()> done_;
        std::unique_ptr<Timer> turn_;
    };

    class Session : public LanguageModelSession {
    public:
        explicit Session(FakeLanguageModel& model)
            : model_(model)
        {
            ++model_.sessions;
        }
        ~Session() override
        {
            --model_.sessions;
            model_.pending_ = nullptr;
        }
        Session(const Session&) = delete;
        Session& operator=(const Session&) = delete;

        void respond(const QString& prompt, std::function<void(LanguageModelAnswer)> done) override
        {
            model_.prompts.push_back(prompt);
            model_.pending_ = std::move(done);
        }

    private:
        FakeLanguageModel& model_;
    };

    MainQueue& queue_;
    LanguageModelAvailability known_ = LanguageModelAvailability::otherReason;
    std::vector<Look*> waiting_;
    std::function<void(LanguageModelAnswer)> pending_;
};

} // namespace corvandi::testing
