#include "core/dictation/dictation_fixture.h"

#include <gmock/gmock.h>

namespace corvandi::testing {
namespace {

using HotkeySetupTest = DictationFixture;

const QString activated = QStringLiteral("Corvandi: global hotkey activated");

TEST_F(HotkeySetupTest, TheHotkeyOfTheSettingsIsWatched)
{
    settings.setHotkeyOption(false);
    settings.setHotkeyCommand(true);
    settings.setHotkeyShift(true);
    controller->applyHotkey();
    controller->startHotkey();
    EXPECT_EQ(taps.watched, (KeyChord{49, 0x120000}));
}

TEST_F(HotkeySetupTest, EveryModifierHasItsOwnBit)
{
    settings.setHotkeyKeyCode(105);
    settings.setHotkeyControl(true);
    controller->applyHotkey();
    controller->startHotkey();
    EXPECT_EQ(taps.watched, (KeyChord{105, 0x80000 + 0x40000}));
}

TEST_F(HotkeySetupTest, TheHotkeyDrivesADictation)
{
    controller->startHotkey();
    taps.keyDown(49, modifier_flags::option);
    queue.advance(1s);
    EXPECT_TRUE(controller->isDictating());
    taps.keyUp(49, modifier_flags::option);
    queue.drain();
    EXPECT_FALSE(controller->isDictating());
    recognise(QStringLiteral("Hello."));
    EXPECT_EQ(keyboard.typed(), QStringLiteral("Hello."));
}

TEST_F(HotkeySetupTest, ANewHotkeyCountsAtOnce)
{
    controller->startHotkey();
    settings.setHotkeyKeyCode(36);
    controller->applyHotkey();
    EXPECT_EQ(taps.watched, (KeyChord{36, 0x80000}));
    EXPECT_EQ(taps.created, 1);
}

TEST_F(HotkeySetupTest, ANewHotkeyThatThePlatformRefusesIsTriedAgainUntilItIsFree)
{
    controller->startHotkey();
    taps.refusesNewChords = true;
    taps.refusesTaps = true;
    settings.setHotkeyKeyCode(36);
    controller->applyHotkey();
    queue.advance(2s);
    EXPECT_EQ(taps.watched, std::nullopt);
    taps.refusesTaps = false;
    queue.advance(2s);
    EXPECT_EQ(taps.watched, (KeyChord{36, 0x80000}));
}

TEST_F(HotkeySetupTest, ANewHotkeyThatIsFreeIsTakenAtOnceWhileARefusedOneIsWaitedFor)
{
    taps.heldByAnother = KeyChord{49, 0x80000};
    accessibility.trusted = false;
    controller->startHotkey();
    EXPECT_EQ(taps.watched, std::nullopt);
    settings.setHotkeyKeyCode(36);
    controller->applyHotkey();
    EXPECT_EQ(taps.watched, (KeyChord{36, 0x80000}));
    EXPECT_EQ(queue.timerCount(), 0U);
}

TEST_F(HotkeySetupTest, BeforeTheHotkeyWasStartedANewOneStartsNothing)
{
    controller->applyHotkey();
    EXPECT_EQ(taps.watched, std::nullopt);
    EXPECT_EQ(queue.timerCount(), 0U);
}

TEST_F(HotkeySetupTest, AHotkeyThatIsRefusedWhileItIsHeldEndsTheRecording)
{
    controller->startHotkey();
    taps.keyDown(49, 0x80000);
    queue.advance(1s);
    ASSERT_TRUE(controller->isDictating());
    taps.refusesNewChords = true;
    controller->applyHotkey();
    queue.drain();
    EXPECT_FALSE(controller->isDictating());
    EXPECT_EQ(input.count("stop"), 1);
    recognise(QStringLiteral("what was said"));
    EXPECT_EQ(keyboard.typed(), QStringLiteral("what was said"));
}

TEST_F(HotkeySetupTest, WhoShowsWhetherTheHotkeyWorksIsToldOfEachChange)
{
    std::vector<bool> told;
    controller->onHotkeyActiveChange = [&] { told.push_back(controller->isHotkeyActive()); };
    taps.refusesTaps = true;
    controller->startHotkey();
    EXPECT_FALSE(controller->isHotkeyActive());
    EXPECT_THAT(told, ::testing::IsEmpty());
    taps.refusesTaps = false;
    queue.advance(2s);
    EXPECT_THAT(told, ::testing::ElementsAre(true));
    controller->startHotkey();
    EXPECT_THAT(told, ::testing::ElementsAre(true));
    taps.refusesNewChords = true;
    controller->applyHotkey();
    EXPECT_THAT(told, ::testing::ElementsAre(true, false));
    controller->onHotkeyActiveChange = nullptr;
}

using HotkeySetupDeathTest = DictationFixture;

TEST_F(HotkeySetupDeathTest, AKeyCodeOutOfRangeStopsTheProcess)
{
    settings.setHotkeyKeyCode(65536);
    EXPECT_DEATH(controller->applyHotkey(), "65536");
    settings.setHotkeyKeyCode(-1);
    EXPECT_DEATH(controller->applyHotkey(), "-1");
}

TEST_F(HotkeySetupTest, TheGreatestKeyCodeIsAccepted)
{
    settings.setHotkeyKeyCode(65535);
    controller->applyHotkey();
    controller->startHotkey();
    EXPECT_EQ(taps.watched, (KeyChord{65535, 0x80000}));
}

TEST_F(HotkeySetupTest, ARefusedTapIsLoggedAndWaitedFor)
{
    taps.refusesTaps = true;
    controller->startHotkey();
    EXPECT_TRUE(log.contains(
        QStringLiteral("Corvandi: global hotkey not active yet; waiting for Accessibility permission")));
    EXPECT_EQ(queue.timerCount(), 1U);
}

TEST_F(HotkeySetupTest, AHotkeyThatStartsAtOncePollsNothing)
{
    controller->startHotkey();
    EXPECT_EQ(queue.timerCount(), 0U);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(HotkeySetupTest, ThePermissionIsPolledEveryTwoSecondsWithoutAskingThePerson)
{
    accessibility.trusted = false;
    controller->waitForAccessibilityThenStartHotkey();
    queue.advance(2s - 1ns);
    EXPECT_EQ(accessibility.silentChecks, 0);
    queue.advance(1ns);
    EXPECT_EQ(accessibility.silentChecks, 1);
    queue.advance(4s);
    EXPECT_EQ(accessibility.silentChecks, 3);
    EXPECT_EQ(accessibility.promptingChecks, 0);
    EXPECT_EQ(taps.created, 0);
}

TEST_F(HotkeySetupTest, OnceTrustedTheHotkeyStartsAndThePollEnds)
{
    accessibility.trusted = false;
    controller->waitForAccessibilityThenStartHotkey();
    queue.advance(2s);
    accessibility.trusted = true;
    queue.advance(2s);
    EXPECT_EQ(taps.created, 1);
    EXPECT_EQ(log.lines(), std::vector<QString>{activated});
    EXPECT_EQ(queue.timerCount(), 0U);
}

TEST_F(HotkeySetupTest, TrustedButRefusedKeepsPolling)
{
    taps.refusesTaps = true;
    controller->waitForAccessibilityThenStartHotkey();
    queue.advance(4s);
    EXPECT_FALSE(log.contains(activated));
    taps.refusesTaps = false;
    queue.advance(2s);
    EXPECT_TRUE(log.contains(activated));
}

TEST_F(HotkeySetupTest, ASecondCallReplacesThePoll)
{
    accessibility.trusted = false;
    controller->waitForAccessibilityThenStartHotkey();
    queue.advance(1s);
    controller->waitForAccessibilityThenStartHotkey();
    EXPECT_EQ(queue.timerCount(), 1U);
    queue.advance(1s);
    EXPECT_EQ(accessibility.silentChecks, 0);
    queue.advance(1s);
    EXPECT_EQ(accessibility.silentChecks, 1);
}

TEST_F(HotkeySetupTest, ThePollEndsWithTheController)
{
    accessibility.trusted = false;
    controller->waitForAccessibilityThenStartHotkey();
    controller.reset();
    queue.advance(10s);
    EXPECT_EQ(accessibility.silentChecks, 0);
}

TEST_F(HotkeySetupTest, ShuttingDownLetsTheHotkeyGo)
{
    controller->startHotkey();
    const auto ending = controller->shutDown();
    EXPECT_EQ(taps.watched, std::nullopt);
}

} // namespace
} // namespace corvandi::testing
