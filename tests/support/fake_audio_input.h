#pragma once

#include "ports/audio_input.h"
#include "support/scripted_step.h"

#include <QCoroTask>

#include <algorithm>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace corvandi::testing {

/// A microphone that delivers what the test gives it, on the thread on which the test does so.
class FakeAudioInput : public AudioInput {
public:
    /// Of the device; a sample rate of 0 means that there is none.
    AudioFormat format{48000, 1, SampleFormat::float32};
    /// Whether the device is; what the test delivers stays as it is.
    bool isDeviceMuted = false;
    ScriptedStep starting;
    ScriptedStep removing;
    /// What was called, in order.
    std::vector<std::string> calls;
    /// With what the latest tap was installed.
    uint32_t tapFrames = 0;
    AudioFormat tapFormat;

    /// Records `buffer`: the tap gets it when it is installed and the device runs.
    ///
    /// Thread: any; everything else is the main thread's.
    void deliver(const AudioBuffer& buffer) const
    {
        const std::lock_guard guard(mutex_);
        if (isRunning_ && tap_)
            tap_(buffer);
    }
    /// Sound that the device still holds: the tap gets it when it is removed.
    void holdBack(AudioBuffer buffer) { heldBack_.push_back(std::move(buffer)); }
    /// The recording ends by itself, after the sound that the device still holds.
    void end(const QString& reason)
    {
        {
            const std::lock_guard guard(mutex_);
            handOverRest();
            isRunning_ = false;
        }
        if (const EndHandler ended = std::exchange(ended_, nullptr))
            ended(reason);
    }

    [[nodiscard]] bool isRunning() const { return isRunning_; }
    [[nodiscard]] bool hasTap() const { return static_cast<bool>(tap_); }
    /// How often `call` is among the calls.
    [[nodiscard]] int count(const std::string& call) const
    {
        return static_cast<int>(std::count(calls.begin(), calls.end(), call));
    }

    [[nodiscard]] AudioFormat inputFormat() override { return format; }
    [[nodiscard]] bool isMuted() override { return isDeviceMuted && format.sampleRate > 0; }
    void installTap(uint32_t frames, const AudioFormat& formatOfTap, TapBlock block) override
    {
        calls.emplace_back("installTap");
        tapFrames = frames;
        tapFormat = formatOfTap;
        const std::lock_guard guard(mutex_);
        tap_ = std::move(block);
    }
    [[nodiscard]] QCoro::Task<> removeTap() override
    {
        calls.emplace_back("removeTap");
        co_await removing.run();
        const std::lock_guard guard(mutex_);
        handOverRest();
        tap_ = nullptr;
    }
    void prepare() override { calls.emplace_back("prepare"); }
    [[nodiscard]] QCoro::Task<> start(EndHandler ended) override
    {
        calls.emplace_back("start");
        co_await starting.run();
        ended_ = std::move(ended);
        const std::lock_guard guard(mutex_);
        isRunning_ = true;
    }
    void stop() override
    {
        calls.emplace_back("stop");
        ended_ = nullptr;
        const std::lock_guard guard(mutex_);
        isRunning_ = false;
    }

private:
    void handOverRest()
    {
        for (const AudioBuffer& buffer : std::exchange(heldBack_, {}))
            tap_(buffer);
    }

    mutable std::mutex mutex_;
    EndHandler ended_;
    TapBlock tap_;
    std::vector<AudioBuffer> heldBack_;
    bool isRunning_ = false;
};

} // namespace corvandi::testing
