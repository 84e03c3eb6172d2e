#include "core/dictation/dictation_fixture.h"

namespace corvandi::testing {
namespace {

const QString words = QStringLiteral("go forward ten meters");

/// The microphone goes while somebody speaks.
class LostMicrophoneTest : public DictationFixture {
protected:
    void loseMicrophone()
    {
        input.end(QStringLiteral("the device has gone"));
        queue.drain();
    }
    void pressAndSpeak()
    {
        press();
        queue.advance(1s);
        ASSERT_TRUE(input.isRunning());
    }
};

TEST_F(LostMicrophoneTest, TheDictationGoesOnWithTheOneThatIsTheDefaultNow)
{
    pressAndSpeak();
    loseMicrophone();
    EXPECT_TRUE(input.isRunning());
    EXPECT_EQ(face().state(), HUDState::recording);
    queue.advance(1s);
    release();
    EXPECT_FALSE(input.isRunning());
    recognise(words);
    EXPECT_EQ(engine.dictations().size(), 1U);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(LostMicrophoneTest, WithoutAnotherOneThatIsSaidAtOnce)
{
    pressAndSpeak();
    input.format.sampleRate = 0;
    loseMicrophone();
    EXPECT_TRUE(controller->isDictating());
    EXPECT_TRUE(shows(HUDState::error, "Transcription incomplete."));
}

TEST_F(LostMicrophoneTest, WithoutAnotherOneTheTextCountsAsIncomplete)
{
    pressAndSpeak();
    input.format.sampleRate = 0;
    loseMicrophone();
    queue.advance(1s);
    release();
    recognise(words);
    EXPECT_TRUE(keyboard.posted.empty());
    EXPECT_EQ(pasteboard.text(), words);
    EXPECT_TRUE(shows(HUDState::error, "Transcription incomplete. Partial text copied to the clipboard; "
                                       "press ⌘V to paste."));
}

TEST_F(LostMicrophoneTest, TheNextDictationIsCompleteAgain)
{
    pressAndSpeak();
    input.format.sampleRate = 0;
    loseMicrophone();
    release();
    recognise(words);
    input.format.sampleRate = 48000;
    dictate(words);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(LostMicrophoneTest, AReleaseWhileTheOtherOneStartsStopsIt)
{
    pressAndSpeak();
    input.starting.hold();
    loseMicrophone();
    queue.advance(1s);
    release();
    EXPECT_FALSE(input.isRunning());
    input.starting.release();
    queue.drain();
    EXPECT_FALSE(input.isRunning());
    recognise(words);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(LostMicrophoneTest, AfterTheReleaseNobodyNeedsAnotherOne)
{
    engine.starting.hold();
    press();
    queue.advance(1s);
    release();
    loseMicrophone();
    EXPECT_EQ(input.count("start"), 1);
    engine.starting.release();
    queue.drain();
    recognise(words);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(LostMicrophoneTest, NothingCaughtByAMutedOneIsSaidWithTheReason)
{
    input.isDeviceMuted = true;
    dictate(QString());
    EXPECT_TRUE(shows(HUDState::error, "Didn't catch that. The microphone is muted."));
}

TEST_F(LostMicrophoneTest, WhatAMutedOneCaughtBeforeIsDelivered)
{
    input.isDeviceMuted = true;
    dictate(words);
    EXPECT_EQ(keyboard.typed(), words);
}

} // namespace
} // namespace corvandi::testing
