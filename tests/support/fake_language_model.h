#pragma once

#include "platform/language_model.h"

#include <vector>

namespace corvandi::testing {

/// A language model that answers when the test says so.
class FakeLanguageModel : public LanguageModel {
public:
    LanguageModelAvailability state = LanguageModelAvailability::available;
    /// The instructions of every conversation and the texts sent, in order.
    std::vector<QString> instructions;
    std::vector<QString> prompts;
    /// Conversations that are still open.
    int sessions = 0;
    int availabilityQueries = 0;

    [[nodiscard]] LanguageModelAvailability availability() override
    {
        ++availabilityQueries;
        return state;
    }
    [[nodiscard]] std::unique_ptr<LanguageModelSession> makeSession(const QString& text) override
    {
        instructions.push_back(text);
        return std::make_unique<Session>(*this);
    }

    /// Whether a question waits for its answer.
    [[nodiscard]] bool isAsked() const { return pending_ != nullptr; }
    /// Answers the open question, if it has not been abandoned.
    void answer(const LanguageModelAnswer& text)
    {
        if (const auto done = std::exchange(pending_, nullptr))
            done(text);
    }

private:
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

    std::function<void(LanguageModelAnswer)> pending_;
};

} // namespace corvandi::testing
