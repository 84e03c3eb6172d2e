#pragma once

#include "base/main_queue.h"
#include "platform/language_model.h"

namespace corvandi {

/// The language model of a machine that has none: never available, for another reason than those that
/// the user could mend. Whoever asks it all the same gets a failure.
///
/// Thread: main thread only.
class NoLanguageModel : public LanguageModel {
public:
    /// `queue` outlives the model and its sessions.
    explicit NoLanguageModel(MainQueue& queue)
        : queue_(queue)
    {
    }

    [[nodiscard]] LanguageModelAvailability availability() override
    {
        return LanguageModelAvailability::otherReason;
    }
    [[nodiscard]] std::unique_ptr<LanguageModelSession> makeSession(const QString&) override
    {
        return std::make_unique<Session>(queue_);
    }

private:
    class Session : public LanguageModelSession {
    public:
        explicit Session(MainQueue& queue)
            : queue_(queue)
        {
        }
        void respond(const QString&, std::function<void(LanguageModelAnswer)> done) override
        {
            answer_ = queue_.after({}, [done = std::move(done)] {
                // Called on a copy: `done` may destroy the session, and with it this timer.
                const auto call = done;
                call(LanguageModelFailure{QStringLiteral("there is no language model")});
            });
        }

    private:
        MainQueue& queue_;
        std::unique_ptr<Timer> answer_;
    };

    MainQueue& queue_;
};

} // namespace corvandi
