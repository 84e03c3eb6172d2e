#pragma once

#include "base/main_queue.h"
#include "ports/language_model.h"
#include "ports/system_log.h"

#include <QCoroTask>

#include <QString>

#include <optional>
#include <stop_token>

namespace corvandi {

/// Has the on-device language model make clean sentences of a dictated text. Whenever that doesn't give
/// a usable text in time there is no result, and the caller keeps what it has.
///
/// Thread: main thread only. Outlives the tasks that it returns.
class Rewriter {
public:
    Rewriter(LanguageModel& model, MainQueue& queue, SystemLog& log)
        : model_(model)
        , queue_(queue)
        , log_(log)
    {
    }

    /// Why rewriting is not available, for the user; nothing when it is.
    [[nodiscard]] static std::optional<QString> caption(LanguageModelAvailability availability);

    /// The rewritten text, without white space at its ends. Nothing when the model is not available as far
    /// as is known (the caller has that refreshed; it is not asked then), fails, takes more than 4 seconds
    /// (it is stopped then), or answers with less than half as many characters as `text` has. Failures and
    /// the time-out are logged; never throws. A `stop` that is requested ends it at once, without a result.
    [[nodiscard]] QCoro::Task<std::optional<QString>> rewrite(QString text, std::stop_token stop = {});

private:
    [[nodiscard]] QCoro::Task<LanguageModelAnswer> answerInTime(QString prompt, std::stop_token stop);

    LanguageModel& model_;
    MainQueue& queue_;
    SystemLog& log_;
};

} // namespace corvandi
