#pragma once

#include "base/error.h"
#include "support/event_loop.h"
#include "support/recording_log.h"
#include "system/audio/pulse_audio_input.h"
#include "system/process/qt_main_queue.h"

#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <optional>
#include <vector>

namespace corvandi::testing {

/// Records from the desktop's microphone and keeps what comes.
class Recorder {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr uint32_t framesPerBlock = 2048;

    /// Starts; true when that worked. `startFailure` says why if not.
    bool start()
    {
        clear();
        startFailure.reset();
        input->installTap(framesPerBlock, input->inputFormat(), [this](const AudioBuffer& block) {
            const std::lock_guard guard(mutex_);
            if (lengths_.empty())
                firstBlock_ = Clock::now();
            lengths_.push_back(block.frameLength());
            samples_.insert(samples_.end(), block.floatSamples().begin(), block.floatSamples().end());
        });
        input->prepare();
        bool hasEnded = false;
        const auto starting = observe(input->start([this](const QString& reason) {
            ends.push_back(reason);
            samplesAtTheEnd = samples().size();
        }),
                                      hasEnded);
        return waitUntil([&] { return hasEnded; }) && !startFailure;
    }
    /// Removes the tap and stops; false when that took too long.
    bool stop()
    {
        const auto removing = input->removeTap();
        const bool isRemoved = waitUntil([&] { return removing.isReady(); });
        input->stop();
        return isRemoved;
    }
    void clear()
    {
        const std::lock_guard guard(mutex_);
        samples_.clear();
        lengths_.clear();
    }
    [[nodiscard]] bool waitForSound() const
    {
        return waitUntil([this] { return !lengths().empty(); });
    }
    [[nodiscard]] bool waitForMicrophone(std::chrono::milliseconds limit = std::chrono::seconds(5)) const
    {
        return waitUntil([this] { return input->inputFormat().sampleRate > 0; }, limit);
    }
    [[nodiscard]] std::vector<float> samples() const
    {
        const std::lock_guard guard(mutex_);
        return samples_;
    }
    [[nodiscard]] std::vector<uint32_t> lengths() const
    {
        const std::lock_guard guard(mutex_);
        return lengths_;
    }
    [[nodiscard]] Clock::time_point firstBlock() const
    {
        const std::lock_guard guard(mutex_);
        return firstBlock_;
    }

    QtMainQueue queue;
    RecordingLog log;
    PulseServer server{queue, log};
    std::unique_ptr<PulseAudioInput> input = std::make_unique<PulseAudioInput>(server, queue, log);
    std::optional<QString> startFailure;
    /// Why recordings have ended by themselves, and what had come until the latest such end.
    std::vector<QString> ends;
    size_t samplesAtTheEnd = 0;

private:
    QCoro::Task<> observe(QCoro::Task<> task, bool& hasEnded)
    {
        try {
            co_await std::move(task);
        } catch (const Error& error) {
            startFailure = error.description();
        }
        hasEnded = true;
    }

    mutable std::mutex mutex_;
    std::vector<float> samples_;
    std::vector<uint32_t> lengths_;
    Clock::time_point firstBlock_;
};

} // namespace corvandi::testing
