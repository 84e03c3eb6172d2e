#include "core/dictation/dictation_fixture.h"

namespace corvandi::testing {
namespace {

using DictationControllerTest = DictationFixture;

const QString words = QStringLiteral("Go forward ten meters.");

AudioBuffer sound(float level)
{
    return {{48000, 1, SampleFormat::float32}, std::vector<float>(2048, level)};
}

TEST_F(DictationControllerTest, ADictationGoesFromPressToTypedText)
{
    press();
    EXPECT_TRUE(controller->isDictating());
    EXPECT_EQ(face().state(), HUDState::recording);
    EXPECT_TRUE(input.isRunning());
    queue.advance(1s);
    release();
    EXPECT_FALSE(input.isRunning());
    EXPECT_TRUE(shows(HUDState::processing, "Transcribing"));
    recognise(words);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(DictationControllerTest, APressStartsNothingInsideTheCall)
{
    controller->beginDictation();
    EXPECT_TRUE(panels.isVisible);
    EXPECT_EQ(input.count("start"), 0);
    queue.drain();
    EXPECT_EQ(input.count("start"), 1);
}

TEST_F(DictationControllerTest, SoundGoesToTheTranscriberAndItsLevelToTheHUD)
{
    press();
    input.deliver(sound(0.25F));
    queue.drain();
    EXPECT_DOUBLE_EQ(face().bars().back(), 1.0);
    queue.advance(1s);
    release();
    ASSERT_EQ(engine.latest().received.size(), 1U);
    recognise(words);
}

TEST_F(DictationControllerTest, WhatTheDeviceStillHoldsAtTheReleaseIsHeardAsWell)
{
    press();
    queue.advance(1s);
    input.holdBack(sound(0.5F));
    release();
    EXPECT_EQ(engine.latest().received.size(), 1U);
    recognise(words);
}

TEST_F(DictationControllerTest, ReleaseJustUnderTheMinimumHidesTheHUDAndDeliversNothing)
{
    hold(350ms - 1ns);
    EXPECT_FALSE(panels.isVisible);
    EXPECT_FALSE(input.isRunning());
    EXPECT_TRUE(engine.latest().wasFinalized);
    recognise(words);
    queue.advance(10s);
    EXPECT_TRUE(nothingWasDelivered());
    EXPECT_FALSE(panels.isVisible);
}

TEST_F(DictationControllerTest, AReleaseOf349MillisecondsCancels)
{
    hold(349ms);
    EXPECT_FALSE(panels.isVisible);
    recognise(words);
    EXPECT_TRUE(nothingWasDelivered());
}

TEST_F(DictationControllerTest, ReleaseExactlyAtTheMinimumDelivers)
{
    hold(350ms);
    EXPECT_TRUE(shows(HUDState::processing, "Transcribing"));
    recognise(words);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(DictationControllerTest, AShortPressWhoseStartFailsSaysNothing)
{
    input.starting.fail(QStringLiteral("no device"));
    hold(100ms);
    queue.advance(1s);
    EXPECT_FALSE(panels.isVisible);
    EXPECT_EQ(controller->modelState(), ModelState(model_state::Pending{}));
}

TEST_F(DictationControllerTest, ASecondPressWhileHeldDoesNothing)
{
    press();
    queue.advance(300ms);
    press();
    EXPECT_EQ(input.count("start"), 1);
    queue.advance(50ms);
    release();
    EXPECT_TRUE(shows(HUDState::processing, "Transcribing"));
    recognise(words);
}

TEST_F(DictationControllerTest, AReleaseWithoutAPressDoesNothing)
{
    release();
    EXPECT_TRUE(panels.calls.empty());
    dictate(words);
    keyboard.posted.clear();
    release();
    EXPECT_TRUE(keyboard.posted.empty());
}

TEST_F(DictationControllerTest, ADeniedMicrophoneRefusesThePress)
{
    for (const AuthorizationStatus status : {AuthorizationStatus::denied, AuthorizationStatus::restricted}) {
        microphone.present = status;
        press();
        EXPECT_FALSE(controller->isDictating());
        EXPECT_TRUE(shows(HUDState::error, "Enable microphone access in System Settings."));
    }
    EXPECT_TRUE(input.calls.empty());
}

TEST_F(DictationControllerTest, AnUndeterminedMicrophonePermissionMayProceed)
{
    microphone.present = AuthorizationStatus::notDetermined;
    press();
    EXPECT_TRUE(controller->isDictating());
}

TEST_F(DictationControllerTest, APasswordFieldRefusesThePress)
{
    focus.focusPasswordField();
    press();
    EXPECT_FALSE(controller->isDictating());
    EXPECT_TRUE(shows(HUDState::notice, "Dictation isn't available in password fields."));
    EXPECT_TRUE(input.calls.empty());
}

TEST_F(DictationControllerTest, TheMicrophoneIsAskedBeforeTheFocus)
{
    microphone.present = AuthorizationStatus::denied;
    focus.focusPasswordField();
    press();
    EXPECT_EQ(face().state(), HUDState::error);
}

TEST_F(DictationControllerTest, APressWhileTheLastDictationIsTranscribedRecordsOnlyAfterItsDelivery)
{
    hold();
    press();
    EXPECT_EQ(face().state(), HUDState::recording);
    EXPECT_EQ(input.count("start"), 1);
    recognise(words);
    EXPECT_EQ(keyboard.typed(), words);
    EXPECT_EQ(input.count("start"), 2);
    EXPECT_TRUE(input.isRunning());
}

TEST_F(DictationControllerTest, TheEarlierDictationLeavesTheHUDOfTheNewerOneAlone)
{
    hold();
    press();
    recognise(words);
    queue.advance(5s);
    EXPECT_TRUE(panels.isVisible);
    EXPECT_EQ(face().state(), HUDState::recording);
    EXPECT_EQ(face().elapsed(), QStringLiteral("0:05"));
}

TEST_F(DictationControllerTest, AReleaseWhileTheStartStillWaitsIsDeliveredOnceItHasStarted)
{
    engine.starting.hold();
    hold();
    EXPECT_EQ(face().state(), HUDState::recording);
    engine.starting.release();
    queue.drain();
    EXPECT_TRUE(shows(HUDState::processing, "Transcribing"));
    recognise(words);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(DictationControllerTest, AMicrophoneThatComesWhileTheLastDictationIsDeliveredIsUsedAsItIs)
{
    hold();
    input.format = {};
    press();
    input.format = {44100, 2, SampleFormat::float32};
    recognise(words);
    ASSERT_EQ(converters.creations.size(), 2U);
    EXPECT_EQ(converters.creations.back().from, input.format);
}

TEST_F(DictationControllerTest, ATranscriptThatTakesFiveSecondsTimesOut)
{
    hold();
    queue.advance(5s - 1ns);
    EXPECT_TRUE(shows(HUDState::processing, "Transcribing"));
    queue.advance(1ns);
    EXPECT_TRUE(shows(HUDState::error, "Transcription timed out."));
}

TEST_F(DictationControllerTest, TextThatComesAfterTheTimeOutIsDropped)
{
    hold();
    queue.advance(5s);
    recognise(words);
    queue.advance(10s);
    EXPECT_TRUE(nothingWasDelivered());
}

TEST_F(DictationControllerTest, AnEngineThatIsNotWaitedForAnyMoreIsToldToGiveUp)
{
    hold();
    engine.pushFinal(words);
    queue.advance(5s - 1ns);
    EXPECT_FALSE(engine.latest().wasCancelled);
    queue.advance(1ns);
    EXPECT_TRUE(engine.latest().wasCancelled);
    EXPECT_TRUE(nothingWasDelivered());
    EXPECT_TRUE(shows(HUDState::error, "Transcription timed out."));
}

TEST_F(DictationControllerTest, ATranscriptJustUnderFiveSecondsIsDelivered)
{
    hold();
    queue.advance(5s - 1ns);
    recognise(words);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(DictationControllerTest, ADictationAfterATimeOutWorks)
{
    hold();
    queue.advance(5s);
    dictate(words);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(DictationControllerTest, ManyDictationsInARowAllArrive)
{
    for (int i = 0; i < 20; ++i)
        dictate(QStringLiteral("a"));
    EXPECT_EQ(keyboard.typed(), QString(20, QLatin1Char('a')));
    EXPECT_EQ(input.count("stop"), 20);
}

TEST_F(DictationControllerTest, TheLogTellsHowLongTheTranscriberTookToStart)
{
    engine.starting.hold();
    press();
    queue.advance(1234567us);
    engine.starting.release();
    queue.drain();
    EXPECT_TRUE(log.contains(QStringLiteral("Corvandi: speech.start ready in 1234ms")));
    EXPECT_EQ(controller->modelState(), ModelState(model_state::Ready{}));
}

TEST_F(DictationControllerTest, TheLogTellsTheTimesThatTheUserFeelsAndNeverTheText)
{
    press();
    queue.advance(60ms);
    input.deliver(sound(0.1F));
    queue.advance(1s);
    release();
    queue.advance(80ms);
    recognise(words);
    EXPECT_TRUE(log.contains(QStringLiteral("Corvandi: first audio 60ms after the press")));
    EXPECT_TRUE(log.contains(QStringLiteral("Corvandi: text inserted 80ms after the release")));
    EXPECT_FALSE(log.contains(QStringLiteral("forward")));
}

TEST_F(DictationControllerTest, AControllerThatIsGoneLeavesItsTasksWithNothingToDo)
{
    controller->beginDictation();
    controller.reset();
    queue.advance(1s);
    EXPECT_EQ(input.count("start"), 0);
}

} // namespace
} // namespace corvandi::testing
