#pragma once

#include "base/one_shot.h"
#include "platform/speech_framework.h"

#include <QCoroTask>

#include <deque>
#include <exception>
#include <optional>

namespace corvandi {

/// The results of one dictation on their way from the engine to whoever waits for them.
///
/// Thread: main thread only.
class ResultChannel {
public:
    void push(SpeechResult result);
    /// Nothing more will come; `failure` says why if something failed, else it is null. Only the first
    /// end counts.
    void end(std::exception_ptr failure);
    [[nodiscard]] bool hasEnded() const { return hasEnded_; }

    /// Takes the oldest result; waits for one if there is none yet; nothing after the end.
    [[nodiscard]] static QCoro::Task<std::optional<SpeechResult>> next(std::shared_ptr<ResultChannel> self);

private:
    void wake();

    std::deque<SpeechResult> results_;
    bool hasEnded_ = false;
    std::exception_ptr failure_;
    std::optional<OneShot<Done>> waiter_;
};

} // namespace corvandi
