#include "recorder.h"
#include "sound_desktop.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::EndedSoundServer;
using testing::HungSoundServer;
using testing::LargePieces;
using testing::Recorder;
using testing::runFor;
using testing::SuspendedMicrophone;
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

    const QString noSound = QStringLiteral("the device delivers no sound");
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
        EXPECT_THAT(recorder.ends, ElementsAre(noSound));
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

/// Only PulseAudio's devices can be made to deliver nothing.
class SuspendedDeviceTest : public SoundFaultsTest {
protected:
    void SetUp() override
    {
        if (testing::isPipeWire())
            GTEST_SKIP() << "this server wakes a device as long as somebody records from it";
        ASSERT_TRUE(recorder.waitForMicrophone());
    }
};

TEST_F(SuspendedDeviceTest, ADeviceThatIsSuspendedEndsTheRecordingAfterASecond)
{
    startRecording();
    {
        const SuspendedMicrophone suspended;
        const auto begin = Recorder::Clock::now();
        expectTheEnd();
        EXPECT_LT(Recorder::Clock::now() - begin, 2s);
        EXPECT_THAT(recorder.ends, ElementsAre(noSound));
    }
    expectThatRecordingWorks();
}

TEST_F(SuspendedDeviceTest, TheFirstSoundMayTakeThreeSeconds)
{
    {
        const SuspendedMicrophone suspended;
        ASSERT_TRUE(recorder.start());
        runFor(3s);
        EXPECT_TRUE(recorder.lengths().empty());
    }
    EXPECT_TRUE(recorder.waitForSound());
    EXPECT_TRUE(recorder.ends.empty());
    EXPECT_TRUE(recorder.stop());
}

TEST_F(SuspendedDeviceTest, ADeviceThatDeliversNothingForFourSecondsEndsTheRecording)
{
    const SuspendedMicrophone suspended;
    ASSERT_TRUE(recorder.start());
    const auto begin = Recorder::Clock::now();
    expectTheEnd();
    EXPECT_GE(Recorder::Clock::now() - begin, 3900ms);
    EXPECT_THAT(recorder.ends, ElementsAre(noSound));
}

TEST_F(SoundFaultsTest, SoundThatIsLateOnItsWayIsStillHandedOver)
{
    if (testing::isPipeWire())
        GTEST_SKIP() << "this server's devices skip what they would have had to deliver while it was stopped";
    startRecording();
    runFor(500ms);
    QCoro::Task<> removing;
    Recorder::Clock::duration recorded{};
    {
        const HungSoundServer hung;
        runFor(100ms);
        recorded = Recorder::Clock::now() - recorder.firstBlock();
        removing = recorder.input->removeTap();
        runFor(120ms);
    }
    EXPECT_TRUE(waitUntil([&] { return removing.isReady(); }));
    recorder.input->stop();
    const double frames = Recorder::framesPerBlock + 48000 * std::chrono::duration<double>(recorded).count();
    EXPECT_GE(static_cast<double>(recorder.samples().size()), frames - 960);
}

TEST_F(SoundFaultsTest, WhatIsRecordedInALargePieceIsHandedOver)
{
    if (!testing::isPipeWire())
        GTEST_SKIP() << "this server's virtual devices deliver in the pieces that are asked for";
    ASSERT_TRUE(recorder.waitForMicrophone());
    const LargePieces pieces;
    runFor(500ms);
    startRecording();
    runFor(500ms);
    const size_t before = recorder.lengths().size();
    ASSERT_TRUE(waitUntil([&] { return recorder.lengths().size() > before; }));
    const size_t heard = recorder.samples().size();
    runFor(60ms);
    EXPECT_TRUE(recorder.stop());
    // 60 ms.
    EXPECT_GE(recorder.samples().size(), heard + 2880);
}

TEST_F(SoundFaultsTest, RemovingTheTapEndsAtOnceWhenTheRecordingIsStopped)
{
    startRecording();
    const HungSoundServer hung;
    const auto begin = Recorder::Clock::now();
    const auto removing = recorder.input->removeTap();
    recorder.input->stop();
    EXPECT_TRUE(waitUntil([&] { return removing.isReady(); }));
    EXPECT_LT(Recorder::Clock::now() - begin, 100ms);
}

TEST_F(SoundFaultsTest, AMutedMicrophoneIsKnownAsSuchAtOnce)
{
    ASSERT_TRUE(recorder.waitForMicrophone());
    EXPECT_FALSE(recorder.input->isMuted());
    {
        const testing::MutedMicrophone muted;
        EXPECT_TRUE(waitUntil([this] { return recorder.input->isMuted(); }));
        Recorder second;
        ASSERT_TRUE(second.waitForMicrophone());
        EXPECT_TRUE(second.input->isMuted());
    }
    EXPECT_TRUE(waitUntil([this] { return !recorder.input->isMuted(); }));
}

TEST_F(SoundFaultsTest, AMicrophoneWithAVolumeOfZeroIsAsGoodAsMuted)
{
    ASSERT_TRUE(recorder.waitForMicrophone());
    const QStringList volume{QStringLiteral("set-source-volume"), QStringLiteral("mic")};
    ASSERT_TRUE(testing::pactl(volume + QStringList{QStringLiteral("0%")}));
    EXPECT_TRUE(waitUntil([this] { return recorder.input->isMuted(); }));
    ASSERT_TRUE(testing::pactl(volume + QStringList{QStringLiteral("100%")}));
    EXPECT_TRUE(waitUntil([this] { return !recorder.input->isMuted(); }));
}

TEST_F(SoundFaultsTest, WithoutAServerNothingIsMuted)
{
    ASSERT_TRUE(recorder.waitForMicrophone());
    const testing::MutedMicrophone muted;
    ASSERT_TRUE(waitUntil([this] { return recorder.input->isMuted(); }));
    EndedSoundServer ended;
    EXPECT_TRUE(waitUntil([this] { return !recorder.input->isMuted(); }));
    ended.bringBack();
    EXPECT_TRUE(recorder.waitForMicrophone(1s));
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
