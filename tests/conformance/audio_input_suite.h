#pragma once

#include "conformance/conformance.h"
#include "ports/audio_input.h"
#include "support/task_outcome.h"

#include <mutex>
#include <thread>
#include <vector>

namespace corvandi::testing {

/// A microphone, and somebody who speaks into it and unplugs it.
class AudioInputDriver : public PassingTime {
public:
    [[nodiscard]] virtual AudioInput& input() = 0;
    /// Has the microphone deliver something, if it does not all the time.
    virtual void speak() = 0;
    virtual void unplug() = 0;
    virtual void plugIn() = 0;
    virtual void mute() = 0;
    virtual void unmute() = 0;
};

class AudioInputSuite : public ConformanceTest<AudioInputDriver> {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(driver.until([this] { return driver.input().inputFormat().sampleRate > 0; }));
    }
    void TearDown() override
    {
        EXPECT_TRUE(removeTap());
        driver.input().stop();
    }

    void record()
    {
        driver.input().installTap(2048, driver.input().inputFormat(), [this](const AudioBuffer& buffer) {
            const std::lock_guard guard(mutex_);
            frames_ += buffer.frameLength();
        });
        driver.input().prepare();
        const TaskOutcome<> starting(driver.input().start([this](const QString& reason) {
            EXPECT_FALSE(reason.isEmpty());
            EXPECT_EQ(std::this_thread::get_id(), mainThread);
            ++ends;
            framesAtTheEnd = frames();
        }));
        ASSERT_TRUE(driver.until([&] { return starting.hasSucceeded(); }));
        expectSound();
    }
    void expectSound()
    {
        const size_t before = frames();
        driver.speak();
        EXPECT_TRUE(driver.until([&] { return frames() > before; }));
    }
    [[nodiscard]] bool removeTap()
    {
        const TaskOutcome<> removing(driver.input().removeTap());
        return driver.until([&] { return removing.hasSucceeded(); });
    }
    [[nodiscard]] size_t frames() const
    {
        const std::lock_guard guard(mutex_);
        return frames_;
    }

    const std::thread::id mainThread = std::this_thread::get_id();
    int ends = 0;
    size_t framesAtTheEnd = 0;

private:
    mutable std::mutex mutex_;
    size_t frames_ = 0;
};

TEST_P(AudioInputSuite, ARecordingThatEndsByItselfIsReportedOnceAndAfterAllItsSound)
{
    record();
    driver.unplug();
    ASSERT_TRUE(driver.until([this] { return ends > 0; }));
    EXPECT_TRUE(removeTap());
    driver.speak();
    driver.settle();
    driver.input().stop();
    driver.settle();
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(frames(), framesAtTheEnd);
}

TEST_P(AudioInputSuite, NothingIsReportedAfterAStop)
{
    record();
    EXPECT_TRUE(removeTap());
    driver.input().stop();
    driver.unplug();
    EXPECT_TRUE(driver.until([this] { return driver.input().inputFormat().sampleRate == 0; }));
    driver.settle();
    EXPECT_EQ(ends, 0);
}

TEST_P(AudioInputSuite, AfterAnEndAStartBeginsAfreshAndItsEndIsReportedAsWell)
{
    record();
    driver.unplug();
    ASSERT_TRUE(driver.until([this] { return ends == 1; }));
    driver.plugIn();
    ASSERT_TRUE(driver.until([this] { return driver.input().inputFormat().sampleRate > 0; }));
    record();
    driver.unplug();
    EXPECT_TRUE(driver.until([this] { return ends == 2; }));
}

TEST_P(AudioInputSuite, AStartWithoutAHandlerMayEnd)
{
    driver.input().installTap(2048, driver.input().inputFormat(), [](const AudioBuffer&) {});
    const TaskOutcome<> starting(driver.input().start({}));
    ASSERT_TRUE(driver.until([&] { return starting.hasSucceeded(); }));
    driver.unplug();
    EXPECT_TRUE(driver.until([this] { return driver.input().inputFormat().sampleRate == 0; }));
    driver.settle();
}

TEST_P(AudioInputSuite, RemovingTheTapAndStoppingAtOnceBothTakeEffect)
{
    record();
    const TaskOutcome<> removing(driver.input().removeTap());
    driver.input().stop();
    EXPECT_TRUE(driver.until([&] { return removing.hasSucceeded(); }));
    const size_t heard = frames();
    driver.speak();
    driver.settle();
    EXPECT_EQ(frames(), heard);
}

TEST_P(AudioInputSuite, WhetherTheMicrophoneIsMutedIsKnownAlsoWhileItRecords)
{
    EXPECT_FALSE(driver.input().isMuted());
    driver.mute();
    EXPECT_TRUE(driver.until([this] { return driver.input().isMuted(); }));
    driver.unmute();
    EXPECT_TRUE(driver.until([this] { return !driver.input().isMuted(); }));
    record();
    driver.mute();
    EXPECT_TRUE(driver.until([this] { return driver.input().isMuted(); }));
    EXPECT_EQ(ends, 0);
}

TEST_P(AudioInputSuite, WithoutAMicrophoneNothingIsMuted)
{
    driver.mute();
    ASSERT_TRUE(driver.until([this] { return driver.input().isMuted(); }));
    driver.unplug();
    EXPECT_TRUE(driver.until([this] { return !driver.input().isMuted(); }));
}

} // namespace corvandi::testing
