#include "core/dictation/dictation_fixture.h"

namespace corvandi::testing {
namespace {

using StartFailureTest = DictationFixture;

constexpr const char* preparing = "Preparing speech model…";

TEST_F(StartFailureTest, WithoutAnInputDeviceNothingIsShownUntilTheRelease)
{
    input.format.sampleRate = 0;
    press();
    queue.advance(1s);
    EXPECT_EQ(face().state(), HUDState::recording);
    release();
    EXPECT_NE(face().state(), HUDState::recording);
    EXPECT_TRUE(log.contains(QStringLiteral("no audio input available")));
    EXPECT_TRUE(nothingWasDelivered());
}

TEST_F(StartFailureTest, WhileTheModelIsPendingTheMessageSaysThatItIsBeingPrepared)
{
    input.starting.fail(QStringLiteral("broken"));
    engine.inventory.hold();
    hold();
    EXPECT_TRUE(shows(HUDState::error, preparing));
    EXPECT_EQ(controller->modelState(), ModelState(model_state::Preparing{}));
}

TEST_F(StartFailureTest, WhileTheModelIsBeingPreparedNoSecondPreparationStarts)
{
    engine.inventory.hold();
    controller->prepareModel();
    queue.drain();
    input.starting.fail(QStringLiteral("broken"));
    hold();
    EXPECT_TRUE(shows(HUDState::error, preparing));
    EXPECT_EQ(engine.inventory.callCount(), 1);
}

TEST_F(StartFailureTest, WithTheModelReadyTheDictationCouldNotBeStarted)
{
    controller->prepareModel();
    queue.drain();
    ASSERT_EQ(controller->modelState(), ModelState(model_state::Ready{}));
    input.starting.fail(QStringLiteral("broken"));
    hold();
    EXPECT_TRUE(shows(HUDState::error, "Couldn't start dictation."));
    EXPECT_EQ(engine.inventory.callCount(), 1);
}

TEST_F(StartFailureTest, AfterAFailedPreparationTheMessageSaysSoAndItIsTriedAgain)
{
    engine.inventory.fail(QStringLiteral("no network"));
    controller->prepareModel();
    queue.drain();
    input.starting.fail(QStringLiteral("broken"));
    hold();
    EXPECT_TRUE(shows(HUDState::error, "Speech model download failed. Check your connection."));
    EXPECT_EQ(engine.inventory.callCount(), 2);
}

TEST_F(StartFailureTest, AnUnsupportedLanguageIsNamedAndNothingIsTriedAgain)
{
    engine.locales = {Locale(QStringLiteral("de-DE"))};
    controller->prepareModel();
    queue.drain();
    hold();
    EXPECT_EQ(face().state(), HUDState::error);
    EXPECT_TRUE(face().statusText().startsWith(QStringLiteral("Dictation isn't available for ")));
    EXPECT_EQ(controller->modelState(), ModelState(model_state::Failed{face().statusText()}));
    EXPECT_EQ(engine.listing.callCount(), 2);
}

TEST_F(StartFailureTest, ATranscriberThatFailsToStartStopsTheMicrophone)
{
    engine.starting.fail(QStringLiteral("broken"));
    hold();
    EXPECT_EQ(face().state(), HUDState::error);
    EXPECT_FALSE(input.isRunning());
    EXPECT_FALSE(input.hasTap());
}

TEST_F(StartFailureTest, SoundOfAFailedDictationDoesNotGetIntoTheNextOne)
{
    engine.starting.hold();
    press();
    input.deliver({{48000, 1, SampleFormat::float32}, std::vector<float>(2048, 0.5F)});
    engine.starting.fail(QStringLiteral("broken"));
    engine.starting.release();
    queue.advance(1s);
    release();
    engine.starting.succeed();
    hold();
    EXPECT_TRUE(engine.latest().wasStarted);
    EXPECT_TRUE(engine.latest().received.empty());
}

TEST_F(StartFailureTest, TheMessageIsSkippedWhenANewerDictationHasBegun)
{
    engine.starting.fail(QStringLiteral("broken"));
    engine.starting.hold();
    hold();
    press();
    engine.starting.release();
    queue.drain();
    EXPECT_EQ(face().state(), HUDState::recording);
}

TEST_F(StartFailureTest, TheNextDictationWorksOnceTheCauseIsGone)
{
    input.starting.fail(QStringLiteral("broken"));
    hold();
    input.starting.succeed();
    dictate(QStringLiteral("Hello."));
    EXPECT_EQ(keyboard.typed(), QStringLiteral("Hello."));
}

} // namespace
} // namespace corvandi::testing
