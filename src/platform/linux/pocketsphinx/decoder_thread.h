#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace corvandi {

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
