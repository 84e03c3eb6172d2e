#pragma once

#include "base/awaitables.h"
#include "ports/speech_framework.h"

#include <QCoroTask>

#include <deque>
#include <exception>
#include <memory>
#include <optional>

namespace corvandi {

/// The results of one dictation on their way from an engine to whoever waits for them.
///
/// Thread: main thread only.
class ResultChannel {
public:
    /// Does nothing after the end.
    void push(SpeechResult result);
    /// Nothing more will come; `failure` says why if something failed, else it is null. Only the first
    /// end counts.
    void end(std::exception_ptr failure);

    /// Takes the oldest result; waits for one if there is none yet; nothing after the end. Throws the
    /// failure once, after the results that came before it. One caller at a time.
    [[nodiscard]] static QCoro::Task<std::optional<SpeechResult>> next(std::shared_ptr<ResultChannel> self);
    /// Completed by the end, after the one who waits for a result has been told; fails as it did.
    [[nodiscard]] const OneShot<Done>& ended() const { return ended_; }

private:
    void wake();

    std::deque<SpeechResult> results_;
    std::exception_ptr failure_;
    std::optional<OneShot<Done>> waiter_;
    OneShot<Done> ended_;
    bool hasEnded_ = false;
};

} // namespace corvandi
