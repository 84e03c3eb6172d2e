#include "recorder.h"
#include "sound_desktop.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using testing::EndedSoundServer;
using testing::HungSoundServer;
using testing::Recorder;
using testing::runFor;
using testing::UnpluggedMicrophone;
using testing::waitUntil;

class SoundFaultsTest : public ::testing::Test {
protected:
    void startRecording()
    {
        ASSERT_TRUE(recorder.waitForMicrophone());
        ASSERT_TRUE(recorder.start());
        ASSERT_TRUE(recorder.waitForSound());
    }
    /// Waits for the report of the recording's end, after which no sound comes.
    void expectTheEnd()
    {
        EXPECT_TRUE(waitUntil([this] { return !recorder.ends.empty(); }));
        EXPECT_TRUE(recorder.log.contains(QStringLiteral("recording ended")));
        EXPECT_TRUE(recorder.stop());
        runFor(100ms);
        EXPECT_EQ(recorder.samples().size(), recorder.samplesAtTheEnd);
        EXPECT_EQ(recorder.ends.size(), 1U);
    }
    void expectThatRecordingWorks()
    {
        EXPECT_TRUE(recorder.start()) << recorder.startFailure.value_or(QString()).toStdString();
        EXPECT_TRUE(recorder.waitForSound());
        EXPECT_TRUE(recorder.stop());
    }
    [[nodiscard]] bool logs(const char* text) const
    {
        return waitUntil([&] { return recorder.log.contains(QLatin1String(text)); });
    }

    Recorder recorder;
};

TEST(SoundServerAbsent, IsNoInputDeviceAndOneLineInTheLog)
{
    const EndedSoundServer ended;
    Recorder recorder;
    runFor(500ms);
    EXPECT_EQ(recorder.input->inputFormat().sampleRate, 0);
    EXPECT_FALSE(recorder.start());
    EXPECT_TRUE(recorder.stop());
    EXPECT_EQ(recorder.log.lines().size(), 1U);
    EXPECT_TRUE(recorder.log.contains(QStringLiteral("can't connect to the sound server")));
}

TEST(SoundServerAbsent, IsNoticedWhenItComes)
{
    EndedSoundServer ended;
    Recorder recorder;
    // All attempts that follow a failure have been made.
    runFor(6s);
    ended.bringBack();
    EXPECT_TRUE(recorder.waitForMicrophone(1s));
    EXPECT_TRUE(recorder.start());
    EXPECT_TRUE(recorder.waitForSound());
    EXPECT_TRUE(recorder.stop());
}

TEST_F(SoundFaultsTest, WithoutAMicrophoneASpeakersMonitorIsNotTaken)
{
    ASSERT_TRUE(recorder.waitForMicrophone());
    UnpluggedMicrophone unplugged;
    EXPECT_TRUE(waitUntil([&] { return recorder.input->inputFormat().sampleRate == 0; }));
    EXPECT_FALSE(recorder.start());
    EXPECT_TRUE(recorder.stop());
    unplugged.plugIn();
    EXPECT_TRUE(recorder.waitForMicrophone());
    expectThatRecordingWorks();
}

TEST_F(SoundFaultsTest, AServerKilledWhileRecordingIsLoggedAndTheNextStartAfterItsReturnWorks)
{
    startRecording();
    const size_t before = recorder.samples().size();
    EndedSoundServer ended;
    expectTheEnd();
    EXPECT_TRUE(logs("lost the sound server"));
    EXPECT_GE(recorder.samples().size(), before);
    EXPECT_EQ(recorder.input->inputFormat().sampleRate, 0);
    ended.bringBack();
    EXPECT_TRUE(recorder.waitForMicrophone(1s));
    expectThatRecordingWorks();
}

TEST_F(SoundFaultsTest, AServerThatIsRestartedWhileIdleIsFoundAgain)
{
    ASSERT_TRUE(recorder.waitForMicrophone());
    ASSERT_TRUE(testing::desktop({QStringLiteral("restart"), QStringLiteral("sound")}));
    EXPECT_TRUE(logs("connected to the sound server"));
    EXPECT_TRUE(recorder.waitForMicrophone(1s));
    expectThatRecordingWorks();
}

TEST_F(SoundFaultsTest, AnUnpluggedMicrophoneEndsTheRecordingAndKeepsWhatWasHeard)
{
    startRecording();
    UnpluggedMicrophone unplugged;
    expectTheEnd();
    EXPECT_GT(recorder.samples().size(), 0U);
    unplugged.plugIn();
    EXPECT_TRUE(recorder.waitForMicrophone());
    expectThatRecordingWorks();
}

TEST_F(SoundFaultsTest, AServerThatHangsWhileRecordingEndsTheRecording)
{
    startRecording();
    {
        const HungSoundServer hung;
        expectTheEnd();
        EXPECT_EQ(recorder.ends.front(), QStringLiteral("the device delivers no sound"));
    }
    expectThatRecordingWorks();
}

TEST_F(SoundFaultsTest, RemovingTheTapDoesNotWaitForAServerThatHangs)
{
    startRecording();
    const HungSoundServer hung;
    const auto begin = Recorder::Clock::now();
    EXPECT_TRUE(recorder.stop());
    EXPECT_LT(Recorder::Clock::now() - begin, 1s);
}

TEST_F(SoundFaultsTest, StartingWithAServerThatHangsFailsAfterTwoSeconds)
{
    ASSERT_TRUE(recorder.waitForMicrophone());
    {
        const HungSoundServer hung;
        const auto begin = Recorder::Clock::now();
        EXPECT_FALSE(recorder.start());
        EXPECT_GE(Recorder::Clock::now() - begin, 2s);
        EXPECT_LT(Recorder::Clock::now() - begin, 4s);
        EXPECT_TRUE(recorder.stop());
    }
    expectThatRecordingWorks();
}

TEST_F(SoundFaultsTest, ADeviceThatIsSuspendedEndsTheRecording)
{
    startRecording();
    if (testing::outputOf(QStringLiteral("pactl"), {QStringLiteral("info")})
            .contains(QLatin1String("PipeWire")))
        GTEST_SKIP() << "this server wakes a device as long as somebody records from it";
    ASSERT_TRUE(
        testing::pactl({QStringLiteral("suspend-source"), QStringLiteral("mic"), QStringLiteral("1")}));
    expectTheEnd();
    EXPECT_EQ(recorder.ends.front(), QStringLiteral("the device delivers no sound"));
    ASSERT_TRUE(
        testing::pactl({QStringLiteral("suspend-source"), QStringLiteral("mic"), QStringLiteral("0")}));
    expectThatRecordingWorks();
}

TEST_F(SoundFaultsTest, ADictationThatFindsNoServerMakesAnAttempt)
{
    startRecording();
    EXPECT_TRUE(recorder.stop());
    EndedSoundServer ended;
    EXPECT_TRUE(logs("lost the sound server"));
    EXPECT_FALSE(recorder.start());
    ASSERT_TRUE(recorder.startFailure);
    EXPECT_TRUE(recorder.stop());
}

} // namespace
} // namespace corvandi
