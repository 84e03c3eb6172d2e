#pragma once

#include "base/main_queue.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace corvandi {

/// Whether the on-device language model can be asked, and if not, why.
enum class LanguageModelAvailability {
    available,
    /// The machine is too small for any model.
    deviceNotEligible,
    /// There is a model, but it is not switched on.
    appleIntelligenceNotEnabled,
    /// It is switched on, but not there yet.
    modelNotReady,
    otherReason,
};

/// Why a language model gave no answer.
struct LanguageModelFailure {
    QString description;
    friend bool operator==(const LanguageModelFailure&, const LanguageModelFailure&) = default;
};

/// The model's text, or why there is none.
using LanguageModelAnswer = std::variant<QString, LanguageModelFailure>;

/// One conversation with the model. Destroying it abandons a question that is still open: the model
/// stops working on it, and its callback never runs.
class LanguageModelSession {
public:
    virtual ~LanguageModelSession() = default;

    /// Sends `prompt` with the platform's default options. `done` runs once, later, on the main thread;
    /// it may destroy the session. One question at a time.
    virtual void respond(const QString& prompt, std::function<void(LanguageModelAnswer)> done) = 0;
};

/// The language model of this machine. Nothing that it is told leaves the machine.
///
/// Thread: main thread only. No call waits for another program.
class LanguageModel {
public:
    virtual ~LanguageModel() = default;

    /// What the last look at the model has found; `otherReason` before the first, and `modelNotReady` while
    /// it is being warmed up. Asks nobody, so this is what a dictation goes by: a look may take its time.
    [[nodiscard]] virtual LanguageModelAvailability availability() = 0;
    /// Looks at the model, unless that was done in the last two seconds. `done` runs once, later, on the
    /// main thread, when `availability` is at most two seconds old, and within two seconds at the latest: a
    /// model that has not answered by then is not ready. Several who ask at a time share one look. The
    /// model outlives the registration.
    [[nodiscard]] virtual std::unique_ptr<Registration> refreshAvailability(std::function<void()> done) = 0;
    /// What the model is called that the last look has found; nothing when it has found none.
    [[nodiscard]] virtual std::optional<QString> modelName() = 0;
    /// Has the model loaded, which may take far longer than anybody waits for an answer; an unanswered
    /// question that is abandoned would end the loading. To be called when rewriting is switched on and at
    /// each press while it is. Looks at the model first, unless that was done in the last two seconds. Does
    /// nothing when the model has answered lately.
    virtual void warmUp() = 0;
    /// A new conversation that knows nothing but `instructions`. The model outlives it.
    [[nodiscard]] virtual std::unique_ptr<LanguageModelSession> makeSession(const QString& instructions) = 0;
};

} // namespace corvandi
