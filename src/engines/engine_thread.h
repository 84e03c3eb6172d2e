#pragma once

#include "base/awaitables.h"
#include "ports/speech_framework.h"

#include <QCoroTask>

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

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

/// A thread that does jobs one after the other and sleeps when there are none.
class DecoderThread {
public:
    using Job = std::function<void()>;

    DecoderThread();
    /// Waits for the job that is being done; those that wait are dropped.
    ~DecoderThread();
    DecoderThread(const DecoderThread&) = delete;
    DecoderThread& operator=(const DecoderThread&) = delete;

    /// Has `job` done, after those that were posted before. Jobs must not throw. Any thread.
    void post(Job job);

private:
    void run();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Job> jobs_;
    bool isEnding_ = false;
    std::thread thread_;
};

} // namespace corvandi
