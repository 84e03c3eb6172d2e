#include "core/speech/audio_engine.h"

#include "base/error.h"
#include "core/speech/sounds.h"
#include "support/fake_audio_input.h"
#include "support/task_outcome.h"
#include "support/virtual_queue.h"

#include <gmock/gmock.h>

#include <cmath>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace corvandi::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::FloatEq;
using ::testing::IsEmpty;

class AudioEngineTest : public ::testing::Test {
protected:
    AudioEngineTest()
    {
        engine->onBuffer = [this](const AudioBuffer& buffer) { received.push_back(buffer); };
        engine->onLevel = [this](float level) { levels.push_back(level); };
        engine->onEnd = [this](const QString& reason) { ends.push_back(reason.toStdString()); };
    }

    TaskOutcome<AudioFormat> start() { return TaskOutcome<AudioFormat>(engine->start()); }
    TaskOutcome<> stop() { return TaskOutcome<>(engine->stop()); }
    void deliver(const AudioBuffer& buffer)
    {
        input.deliver(buffer);
        queue.drain();
    }

    VirtualQueue queue;
    FakeAudioInput input;
    std::vector<AudioBuffer> received;
    std::vector<float> levels;
    std::vector<std::string> ends;
    std::optional<AudioEngine> engine{std::in_place, input, queue};
};

TEST_F(AudioEngineTest, StartTapsTheInputWith2048FramesInItsOwnFormatAndThenStartsIt)
{
    input.format = {44100, 2, SampleFormat::float32};
    EXPECT_TRUE(start().hasSucceeded());

    EXPECT_TRUE(engine->running());
    EXPECT_THAT(input.calls, ElementsAre("installTap", "prepare", "start"));
    EXPECT_EQ(input.tapFrames, 2048u);
    EXPECT_EQ(input.tapFormat, input.format);
}

TEST_F(AudioEngineTest, StartTellsTheFormatOfTheBuffersAlsoWhenTheDefaultInputChangesMeanwhile)
{
    const AudioFormat first{96000, 4, SampleFormat::float32};
    input.format = first;
    input.starting.hold();
    const auto outcome = start();
    input.format = microphoneFormat;
    input.starting.release();
    EXPECT_EQ(outcome.value(), first);
    EXPECT_EQ(input.tapFormat, first);
    // It runs already: its buffers come as before.
    EXPECT_EQ(start().value(), first);
}

TEST_F(AudioEngineTest, TellsWhetherTheInputIsMuted)
{
    EXPECT_FALSE(engine->isInputMuted());
    input.isDeviceMuted = true;
    EXPECT_TRUE(engine->isInputMuted());
    EXPECT_THAT(input.calls, IsEmpty());
}

TEST_F(AudioEngineTest, IsNotRunningBeforeTheDeviceRuns)
{
    input.starting.hold();
    const auto outcome = start();
    EXPECT_FALSE(engine->running());
    EXPECT_FALSE(outcome.hasEnded());

    input.starting.release();
    EXPECT_TRUE(engine->running());
    EXPECT_TRUE(outcome.hasSucceeded());
}

TEST_F(AudioEngineTest, StartingTwiceInARowInstallsOneTapOnly)
{
    EXPECT_TRUE(start().hasSucceeded());
    EXPECT_TRUE(start().hasSucceeded());
    EXPECT_EQ(input.count("installTap"), 1);
    EXPECT_EQ(input.count("start"), 1);
}

TEST_F(AudioEngineTest, StartingWhileAStartIsUnderWayWaitsForItAndInstallsOneTapOnly)
{
    input.starting.hold();
    const auto first = start();
    const auto second = start();
    queue.drain();
    EXPECT_FALSE(second.hasEnded());

    input.starting.release();
    queue.drain();
    EXPECT_TRUE(first.hasSucceeded());
    EXPECT_TRUE(second.hasSucceeded());
    EXPECT_EQ(input.count("installTap"), 1);
}

TEST_F(AudioEngineTest, AStartThatWaitedForAFailedOneTriesForItself)
{
    input.starting.hold();
    input.starting.fail(QStringLiteral("device busy"));
    const auto first = start();
    const auto second = start();
    input.starting.release();
    EXPECT_TRUE(first.hasFailed());

    input.starting.succeed();
    queue.drain();
    EXPECT_TRUE(second.hasSucceeded());
    EXPECT_TRUE(engine->running());
    EXPECT_THAT(input.calls,
                ElementsAre("installTap", "prepare", "start", "removeTap", "installTap", "prepare", "start"));
}

TEST_F(AudioEngineTest, WithoutAnInputDeviceStartFailsAndInstallsNothing)
{
    input.format = {};
    const auto outcome = start();
    EXPECT_FALSE(engine->running());
    EXPECT_THAT(input.calls, IsEmpty());
    try {
        outcome.rethrow();
        ADD_FAILURE() << "start succeeded without a device";
    } catch (const Error& error) {
        EXPECT_EQ(error.domain(), QStringLiteral("Corvandi"));
        EXPECT_EQ(error.code(), 1);
        EXPECT_EQ(error.description(), QStringLiteral("no audio input available"));
    }
}

TEST_F(AudioEngineTest, AfterFindingNoInputDeviceALaterStartWorks)
{
    input.format = {};
    EXPECT_TRUE(start().hasFailed());
    input.format = microphoneFormat;
    EXPECT_TRUE(start().hasSucceeded());
    EXPECT_TRUE(engine->running());
}

TEST_F(AudioEngineTest, WhenTheInputCannotBeStartedTheTapIsRemovedAndItsErrorPassedOn)
{
    input.starting.fail(QStringLiteral("device busy"));
    const auto outcome = start();
    EXPECT_EQ(outcome.failure(), QStringLiteral("device busy"));
    EXPECT_FALSE(engine->running());
    EXPECT_FALSE(input.hasTap());
    EXPECT_THAT(input.calls, ElementsAre("installTap", "prepare", "start", "removeTap"));
}

TEST_F(AudioEngineTest, StopRemovesTheTapBeforeItStopsTheInput)
{
    EXPECT_TRUE(start().hasSucceeded());
    input.calls.clear();
    EXPECT_TRUE(stop().hasSucceeded());
    EXPECT_FALSE(engine->running());
    EXPECT_FALSE(input.isRunning());
    EXPECT_THAT(input.calls, ElementsAre("removeTap", "stop"));
}

TEST_F(AudioEngineTest, StopDeliversWhatTheDeviceStillHolds)
{
    EXPECT_TRUE(start().hasSucceeded());
    input.holdBack(tagged(0.25F, 100));
    EXPECT_TRUE(stop().hasSucceeded());
    EXPECT_THAT(tags(received), ElementsAre(0.25F));
}

TEST_F(AudioEngineTest, IsRunningUntilTheTapHasBeenRemoved)
{
    EXPECT_TRUE(start().hasSucceeded());
    input.removing.hold();
    const auto outcome = stop();
    EXPECT_TRUE(engine->running());
    input.removing.release();
    EXPECT_FALSE(engine->running());
    EXPECT_TRUE(outcome.hasSucceeded());
}

TEST_F(AudioEngineTest, StoppingWhatDoesNotRunTouchesNothing)
{
    EXPECT_TRUE(stop().hasSucceeded());
    EXPECT_THAT(input.calls, IsEmpty());
}

TEST_F(AudioEngineTest, AStopDuringAStartTakesEffectAfterIt)
{
    input.starting.hold();
    const auto starting = start();
    const auto stopping = stop();
    input.starting.release();
    queue.drain();
    EXPECT_TRUE(starting.hasSucceeded());
    EXPECT_TRUE(stopping.hasSucceeded());
    EXPECT_FALSE(engine->running());
    EXPECT_FALSE(input.hasTap());
    EXPECT_FALSE(input.isRunning());
}

TEST_F(AudioEngineTest, AStartDuringAStopBeginsAfterIt)
{
    EXPECT_TRUE(start().hasSucceeded());
    input.removing.hold();
    const auto stopping = stop();
    const auto restarting = start();
    input.removing.release();
    queue.drain();
    EXPECT_TRUE(stopping.hasSucceeded());
    EXPECT_TRUE(restarting.hasSucceeded());
    EXPECT_TRUE(engine->running());
    EXPECT_TRUE(input.hasTap());
}

TEST_F(AudioEngineTest, TheSameInputServesOneDictationAfterTheOther)
{
    for (int dictation = 0; dictation < 3; ++dictation) {
        EXPECT_TRUE(start().hasSucceeded());
        deliver(tagged(0.5F));
        EXPECT_TRUE(stop().hasSucceeded());
        deliver(tagged(0.75F));
    }
    EXPECT_THAT(tags(received), ElementsAre(0.5F, 0.5F, 0.5F));
    EXPECT_EQ(levels.size(), 3u);
}

TEST_F(AudioEngineTest, HandsEachBufferOnAtOnceOnTheAudioThreadAndItsLevelLaterOnTheMainThread)
{
    std::thread::id bufferThread;
    std::thread::id levelThread;
    engine->onBuffer = [&](const AudioBuffer&) { bufferThread = std::this_thread::get_id(); };
    engine->onLevel = [&](float) { levelThread = std::this_thread::get_id(); };
    EXPECT_TRUE(start().hasSucceeded());

    std::thread audioThread([this] { input.deliver(tagged(0.5F)); });
    const std::thread::id audioThreadId = audioThread.get_id();
    audioThread.join();
    EXPECT_EQ(bufferThread, audioThreadId);
    EXPECT_EQ(levelThread, std::thread::id());

    queue.drain();
    EXPECT_EQ(levelThread, std::this_thread::get_id());
}

TEST_F(AudioEngineTest, HandsTheBufferOnWithoutCopyingIt)
{
    const AudioBuffer* handedOn = nullptr;
    engine->onBuffer = [&](const AudioBuffer& buffer) { handedOn = &buffer; };
    EXPECT_TRUE(start().hasSucceeded());
    const AudioBuffer buffer = tagged(0.5F);
    deliver(buffer);
    EXPECT_EQ(handedOn, &buffer);
}

TEST_F(AudioEngineTest, TheLevelIsTheRootMeanSquareOfTheBuffer)
{
    EXPECT_TRUE(start().hasSucceeded());
    deliver({microphoneFormat, std::vector<float>{0.0F, 0.6F, -0.8F, 0.0F}});
    EXPECT_THAT(levels, ElementsAre(FloatEq(0.5F)));
}

TEST_F(AudioEngineTest, ABufferWithoutFloatSamplesHasTheLevelZeroAndIsStillHandedOn)
{
    EXPECT_TRUE(start().hasSucceeded());
    deliver({AudioFormat{48000, 1, SampleFormat::int16}, std::vector<int16_t>(2048, 20000)});
    EXPECT_THAT(levels, ElementsAre(0.0F));
    EXPECT_EQ(received.size(), 1u);
}

TEST_F(AudioEngineTest, AnEmptyBufferHasTheLevelZeroAndIsStillHandedOn)
{
    EXPECT_TRUE(start().hasSucceeded());
    deliver(tagged(1, 0));
    EXPECT_THAT(levels, ElementsAre(0.0F));
    EXPECT_EQ(received.size(), 1u);
}

TEST_F(AudioEngineTest, TheTapUsesTheCallbacksAsTheyWereWhenStartWasCalled)
{
    input.starting.hold();
    const auto outcome = start();
    std::vector<float> laterLevels;
    engine->onBuffer = nullptr;
    engine->onLevel = [&](float level) { laterLevels.push_back(level); };
    input.starting.release();
    deliver(tagged(0.5F));
    EXPECT_EQ(received.size(), 1u);
    EXPECT_EQ(levels.size(), 1u);

    EXPECT_TRUE(stop().hasSucceeded());
    EXPECT_TRUE(start().hasSucceeded());
    deliver(tagged(0.5F));
    EXPECT_EQ(received.size(), 1u);
    EXPECT_EQ(laterLevels.size(), 1u);
}

TEST_F(AudioEngineTest, WorksWithoutCallbacks)
{
    engine->onBuffer = nullptr;
    engine->onLevel = nullptr;
    EXPECT_TRUE(start().hasSucceeded());
    deliver(tagged(0.5F));
    EXPECT_THAT(received, IsEmpty());
    EXPECT_THAT(levels, IsEmpty());
}

TEST_F(AudioEngineTest, ALevelThatIsOnItsWayWhenCaptureStopsStillArrives)
{
    EXPECT_TRUE(start().hasSucceeded());
    input.deliver(tagged(0.5F));
    EXPECT_TRUE(stop().hasSucceeded());
    queue.drain();
    EXPECT_THAT(levels, ElementsAre(FloatEq(0.5F)));
}

TEST_F(AudioEngineTest, DestroyingARunningEngineEndsCaptureAndNoCallbackRunsAnyMore)
{
    EXPECT_TRUE(start().hasSucceeded());
    input.deliver(tagged(0.5F));
    input.holdBack(tagged(0.25F));
    engine.reset();
    queue.drain();
    EXPECT_FALSE(input.isRunning());
    EXPECT_FALSE(input.hasTap());
    EXPECT_THAT(tags(received), ElementsAre(0.5F));
    EXPECT_THAT(levels, IsEmpty());
}

TEST_F(AudioEngineTest, AStartThatIsUnderWayWhenTheEngineIsDestroyedEndsWithAnErrorAndLeavesNothingRunning)
{
    input.starting.hold();
    const auto outcome = start();
    engine.reset();
    EXPECT_FALSE(outcome.hasEnded());

    input.starting.release();
    EXPECT_TRUE(outcome.hasFailed());
    EXPECT_FALSE(input.isRunning());
    EXPECT_FALSE(input.hasTap());
}

TEST_F(AudioEngineTest, AStartThatWaitsWhenTheEngineIsDestroyedEndsWithAnError)
{
    input.starting.hold();
    const auto first = start();
    const auto second = start();
    engine.reset();
    input.starting.release();
    queue.drain();
    EXPECT_TRUE(first.hasFailed());
    EXPECT_TRUE(second.hasFailed());
    EXPECT_EQ(input.count("installTap"), 1);
}

TEST_F(AudioEngineTest, AStopThatIsUnderWayWhenTheEngineIsDestroyedCompletes)
{
    EXPECT_TRUE(start().hasSucceeded());
    input.removing.hold();
    const auto outcome = stop();
    engine.reset();
    input.removing.release();
    EXPECT_TRUE(outcome.hasSucceeded());
    EXPECT_FALSE(input.isRunning());
    EXPECT_EQ(input.count("removeTap"), 1);
}

class AudioEngineEndTest : public AudioEngineTest {
protected:
    AudioEngineEndTest() { EXPECT_TRUE(start().hasSucceeded()); }

    void end()
    {
        input.end(QStringLiteral("unplugged"));
        queue.drain();
    }
};

TEST_F(AudioEngineEndTest, CaptureThatEndsByItselfIsReportedAndRunsNoLonger)
{
    end();
    EXPECT_THAT(ends, ElementsAre("unplugged"));
    EXPECT_FALSE(engine->running());
    EXPECT_FALSE(input.hasTap());
}

TEST_F(AudioEngineEndTest, AllSoundComesBeforeTheReport)
{
    size_t buffersAtTheEnd = 0;
    EXPECT_TRUE(stop().hasSucceeded());
    engine->onEnd = [&](const QString&) { buffersAtTheEnd = received.size(); };
    EXPECT_TRUE(start().hasSucceeded());
    input.deliver(tagged(0.5F));
    input.holdBack(tagged(0.25F, 100));
    end();
    EXPECT_EQ(buffersAtTheEnd, 2U);
    EXPECT_THAT(tags(received), ElementsAre(0.5F, 0.25F));
}

TEST_F(AudioEngineEndTest, AStopAfterTheEndHasNothingToDo)
{
    end();
    input.calls.clear();
    EXPECT_TRUE(stop().hasSucceeded());
    EXPECT_THAT(input.calls, IsEmpty());
}

TEST_F(AudioEngineEndTest, ALaterStartTakesTheDeviceThatIsTheDefaultByThen)
{
    end();
    input.format = {16000, 1, SampleFormat::float32};
    EXPECT_EQ(start().value(), input.format);
    EXPECT_TRUE(engine->running());
    EXPECT_EQ(input.tapFormat, input.format);
    deliver(tagged(0.5F, 2048, 16000));
    EXPECT_THAT(tags(received), ElementsAre(0.5F));
    end();
    EXPECT_THAT(ends, ElementsAre("unplugged", "unplugged"));
}

TEST_F(AudioEngineEndTest, CaptureMayBeStartedAgainInsideTheReport)
{
    EXPECT_TRUE(stop().hasSucceeded());
    std::optional<TaskOutcome<AudioFormat>> restart;
    engine->onEnd = [&](const QString&) { restart = start(); };
    EXPECT_TRUE(start().hasSucceeded());
    end();
    ASSERT_TRUE(restart);
    EXPECT_TRUE(restart->hasSucceeded());
    EXPECT_TRUE(engine->running());
    EXPECT_TRUE(input.hasTap());
}

TEST_F(AudioEngineEndTest, TheEngineMayBeDestroyedInsideTheReport)
{
    EXPECT_TRUE(stop().hasSucceeded());
    engine->onEnd = [&](const QString&) { engine.reset(); };
    EXPECT_TRUE(start().hasSucceeded());
    end();
    EXPECT_FALSE(engine);
    EXPECT_FALSE(input.isRunning());
}

TEST_F(AudioEngineEndTest, AnEndWhileCaptureIsBeingStoppedIsNotReported)
{
    input.removing.hold();
    const auto stopping = stop();
    end();
    EXPECT_THAT(ends, IsEmpty());
    input.removing.release();
    EXPECT_TRUE(stopping.hasSucceeded());
    EXPECT_FALSE(engine->running());

    EXPECT_TRUE(start().hasSucceeded());
    end();
    EXPECT_THAT(ends, ElementsAre("unplugged"));
}

TEST_F(AudioEngineEndTest, AnEndIsOfNoInterestToAnyoneWhenTheEngineIsDestroyed)
{
    engine.reset();
    end();
    EXPECT_THAT(ends, IsEmpty());
}

} // namespace
} // namespace corvandi::testing
