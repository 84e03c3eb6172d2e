#include "core/hotkey/hotkey_manager.h"

#include "support/fake_event_tap.h"
#include "support/virtual_queue.h"

#include <gtest/gtest.h>

#include <string>

namespace corvandi::testing {
namespace {

constexpr uint64_t option = 0x80000;
constexpr uint64_t control = 0x40000;
constexpr uint64_t shift = 0x20000;
constexpr uint64_t command = 0x100000;
constexpr int64_t space = 49;
constexpr int64_t letterA = 0;
constexpr uint16_t f13 = 105;

class HotKeyManagerTest : public ::testing::Test {
protected:
    HotKeyManagerTest()
    {
        manager.onStart = [this] { notifications += "start "; };
        manager.onStop = [this] { notifications += "stop "; };
    }

    /// What was notified so far, once everything due has run.
    std::string notified()
    {
        queue.drain();
        return notifications;
    }
    void press() { ASSERT_EQ(taps.keyDown(space, option), TapVerdict::swallow); }

    FakeEventTapFactory taps;
    VirtualQueue queue;
    HotKeyManager manager{taps, queue};
    std::string notifications;
};

TEST_F(HotKeyManagerTest, ListensForOptionSpaceUnlessConfigured)
{
    EXPECT_EQ(manager.keyCode(), 49);
    EXPECT_EQ(manager.requiredFlags(), 0x80000U);
    ASSERT_TRUE(manager.start());
    EXPECT_EQ(taps.watched, (KeyChord{49, 0x80000}));
    EXPECT_TRUE(taps.tapEnabled);
}

TEST_F(HotKeyManagerTest, APressStartsAndAReleaseStopsAndBothAreSwallowed)
{
    ASSERT_TRUE(manager.start());
    EXPECT_EQ(taps.flagsChanged(option), TapVerdict::pass);
    EXPECT_EQ(taps.keyDown(space, option), TapVerdict::swallow);
    EXPECT_EQ(taps.keyUp(space, option), TapVerdict::swallow);
    EXPECT_EQ(taps.flagsChanged(0), TapVerdict::pass);
    EXPECT_EQ(notified(), "start stop ");
}

TEST_F(HotKeyManagerTest, NotificationsRunLaterAndInOrder)
{
    ASSERT_TRUE(manager.start());
    taps.keyDown(space, option);
    taps.keyUp(space, option);
    taps.keyDown(space, option);
    EXPECT_EQ(notifications, "");
    EXPECT_EQ(notified(), "start stop start ");
}

TEST_F(HotKeyManagerTest, AKeyDownOfAnotherKeyPasses)
{
    ASSERT_TRUE(manager.start());
    EXPECT_EQ(taps.keyDown(letterA, option), TapVerdict::pass);
    EXPECT_EQ(notified(), "");
}

TEST_F(HotKeyManagerTest, TheKeyWithoutItsModifiersPasses)
{
    ASSERT_TRUE(manager.start());
    EXPECT_EQ(taps.keyDown(space, 0), TapVerdict::pass);
    EXPECT_EQ(taps.keyDown(space, control), TapVerdict::pass);
    EXPECT_EQ(notified(), "");
}

TEST_F(HotKeyManagerTest, APressNeedsEveryRequiredModifier)
{
    ASSERT_TRUE(manager.setChord({49, command | shift}));
    ASSERT_TRUE(manager.start());
    EXPECT_EQ(taps.keyDown(space, command), TapVerdict::pass);
    EXPECT_EQ(taps.keyDown(space, shift), TapVerdict::pass);
    EXPECT_EQ(taps.keyDown(space, command | shift), TapVerdict::swallow);
    EXPECT_EQ(notified(), "start ");
}

TEST_F(HotKeyManagerTest, AutoRepeatsAreSwallowedAndOnlyTheFirstPressStarts)
{
    ASSERT_TRUE(manager.start());
    press();
    EXPECT_EQ(taps.keyDown(space, option), TapVerdict::swallow);
    EXPECT_EQ(taps.keyDown(space, option), TapVerdict::swallow);
    EXPECT_EQ(notified(), "start ");
}

TEST_F(HotKeyManagerTest, ARepeatThatHasLostItsModifierPasses)
{
    ASSERT_TRUE(manager.start());
    press();
    EXPECT_EQ(taps.keyDown(space, 0), TapVerdict::pass);
    EXPECT_EQ(taps.keyUp(space, 0), TapVerdict::swallow);
    EXPECT_EQ(notified(), "start stop ");
}

TEST_F(HotKeyManagerTest, FurtherModifiersDoNotPreventAMatch)
{
    ASSERT_TRUE(manager.start());
    EXPECT_EQ(taps.keyDown(space, control | option), TapVerdict::swallow);
    EXPECT_EQ(notified(), "start ");
}

TEST_F(HotKeyManagerTest, BitsThatNameADeviceAreIgnored)
{
    ASSERT_TRUE(manager.start());
    EXPECT_EQ(taps.keyDown(space, option | 0x20 | 0x100), TapVerdict::swallow);
    EXPECT_EQ(taps.flagsChanged(option | 0x40), TapVerdict::pass);
    EXPECT_EQ(notified(), "start ");
}

TEST_F(HotKeyManagerTest, AKeyUpWithoutAPressPasses)
{
    ASSERT_TRUE(manager.start());
    EXPECT_EQ(taps.keyUp(space, option), TapVerdict::pass);
    EXPECT_EQ(notified(), "");
}

TEST_F(HotKeyManagerTest, AKeyUpOfAnotherKeyPassesWhileTheHotkeyIsHeld)
{
    ASSERT_TRUE(manager.start());
    press();
    EXPECT_EQ(taps.keyUp(letterA, option), TapVerdict::pass);
    EXPECT_EQ(notified(), "start ");
}

TEST_F(HotKeyManagerTest, ReleasingTheModifierFirstStopsAndTheKeyUpBelongsToTheApplication)
{
    ASSERT_TRUE(manager.start());
    press();
    EXPECT_EQ(taps.flagsChanged(0), TapVerdict::pass);
    EXPECT_EQ(notified(), "start stop ");
    EXPECT_EQ(taps.keyUp(space, 0), TapVerdict::pass);
    EXPECT_EQ(notified(), "start stop ");
}

TEST_F(HotKeyManagerTest, AModifierChangeThatKeepsTheRequiredOnesDoesNotStop)
{
    ASSERT_TRUE(manager.start());
    press();
    EXPECT_EQ(taps.flagsChanged(option | shift), TapVerdict::pass);
    EXPECT_EQ(taps.flagsChanged(option), TapVerdict::pass);
    EXPECT_EQ(notified(), "start ");
}

TEST_F(HotKeyManagerTest, AModifierChangeWithoutAPressDoesNothing)
{
    ASSERT_TRUE(manager.start());
    EXPECT_EQ(taps.flagsChanged(0), TapVerdict::pass);
    EXPECT_EQ(notified(), "");
}

TEST_F(HotKeyManagerTest, AHotkeyWithoutModifiersStopsOnlyOnItsKeyUp)
{
    ASSERT_TRUE(manager.setChord({f13, 0}));
    ASSERT_TRUE(manager.start());
    EXPECT_EQ(taps.keyDown(f13, 0), TapVerdict::swallow);
    EXPECT_EQ(taps.flagsChanged(shift), TapVerdict::pass);
    EXPECT_EQ(taps.flagsChanged(0), TapVerdict::pass);
    EXPECT_EQ(notified(), "start ");
    EXPECT_EQ(taps.keyUp(f13, 0), TapVerdict::swallow);
    EXPECT_EQ(notified(), "start stop ");
}

TEST_F(HotKeyManagerTest, ADisabledTapIsEnabledAgainAndTheNextPressWorks)
{
    ASSERT_TRUE(manager.start());
    taps.tapEnabled = false;
    EXPECT_EQ(taps.send(KeyEventType::tapDisabledByTimeout, 0, 0), TapVerdict::pass);
    EXPECT_TRUE(taps.tapEnabled);
    taps.tapEnabled = false;
    EXPECT_EQ(taps.send(KeyEventType::tapDisabledByUserInput, 0, 0), TapVerdict::pass);
    EXPECT_TRUE(taps.tapEnabled);
    press();
    EXPECT_EQ(notified(), "start ");
}

TEST_F(HotKeyManagerTest, ADisabledTapLeavesAPressUnderWay)
{
    ASSERT_TRUE(manager.start());
    press();
    taps.send(KeyEventType::tapDisabledByTimeout, 0, 0);
    EXPECT_EQ(taps.keyUp(space, option), TapVerdict::swallow);
    EXPECT_EQ(notified(), "start stop ");
}

TEST_F(HotKeyManagerTest, EventsOfOtherTypesPass)
{
    ASSERT_TRUE(manager.start());
    press();
    EXPECT_EQ(taps.send(static_cast<KeyEventType>(14), space, option), TapVerdict::pass);
    EXPECT_EQ(notified(), "start ");
}

TEST_F(HotKeyManagerTest, StartingTwiceInstallsOneTap)
{
    EXPECT_TRUE(manager.start());
    EXPECT_TRUE(manager.start());
    EXPECT_EQ(taps.created, 1);
}

TEST_F(HotKeyManagerTest, ARefusedTapLeavesTheManagerStopped)
{
    taps.refusesTaps = true;
    EXPECT_FALSE(manager.start());
    taps.refusesTaps = false;
    EXPECT_TRUE(manager.start());
    EXPECT_EQ(taps.created, 1);
}

TEST_F(HotKeyManagerTest, StoppingWithoutAStartIsHarmless)
{
    manager.stop();
    EXPECT_TRUE(manager.start());
}

TEST_F(HotKeyManagerTest, StoppingWhileHeldEndsThePressWithoutANotification)
{
    ASSERT_TRUE(manager.start());
    press();
    manager.stop();
    EXPECT_FALSE(taps.tapEnabled);
    EXPECT_EQ(taps.watched, std::nullopt);
    ASSERT_TRUE(manager.start());
    EXPECT_EQ(taps.created, 2);
    EXPECT_EQ(taps.keyUp(space, option), TapVerdict::pass);
    EXPECT_EQ(notified(), "start ");
}

TEST_F(HotKeyManagerTest, DestroyingTheManagerRemovesTheTap)
{
    {
        HotKeyManager other(taps, queue);
        ASSERT_TRUE(other.start());
    }
    EXPECT_EQ(taps.watched, std::nullopt);
    EXPECT_FALSE(taps.tapEnabled);
}

TEST_F(HotKeyManagerTest, ANewHotkeyGovernsTheNextEventsWithoutARestart)
{
    ASSERT_TRUE(manager.start());
    ASSERT_TRUE(manager.setChord({f13, control}));
    EXPECT_EQ(taps.watched, (KeyChord{f13, control}));
    EXPECT_EQ(taps.created, 1);
    EXPECT_EQ(taps.keyDown(space, option), TapVerdict::pass);
    EXPECT_EQ(taps.keyDown(f13, control), TapVerdict::swallow);
}

TEST_F(HotKeyManagerTest, AHotkeyChangedWhileHeldStaysHeldUntilTheNewOneEndsIt)
{
    ASSERT_TRUE(manager.start());
    press();
    ASSERT_TRUE(manager.setChord({f13, control}));
    EXPECT_EQ(taps.keyUp(space, option), TapVerdict::pass);
    EXPECT_EQ(notified(), "start ");
    EXPECT_EQ(taps.keyUp(f13, control), TapVerdict::swallow);
    EXPECT_EQ(notified(), "start stop ");
}

TEST_F(HotKeyManagerTest, AHotkeyChangedWhileHeldEndsWithAModifierChangeOfTheNewOne)
{
    ASSERT_TRUE(manager.start());
    press();
    ASSERT_TRUE(manager.setChord({f13, control}));
    EXPECT_EQ(taps.flagsChanged(option), TapVerdict::pass);
    EXPECT_EQ(notified(), "start stop ");
}

TEST_F(HotKeyManagerTest, AHotkeyThatThePlatformRefusesIsReported)
{
    ASSERT_TRUE(manager.start());
    taps.refusesNewChords = true;
    EXPECT_FALSE(manager.setChord({f13, control}));
    EXPECT_EQ(manager.keyCode(), f13);
}

TEST_F(HotKeyManagerTest, EventsAreSwallowedAlsoWithoutCallbacks)
{
    manager.onStart = nullptr;
    manager.onStop = nullptr;
    ASSERT_TRUE(manager.start());
    EXPECT_EQ(taps.keyDown(space, option), TapVerdict::swallow);
    EXPECT_EQ(taps.keyUp(space, option), TapVerdict::swallow);
    EXPECT_EQ(notified(), "");
}

using HotKeyManagerDeathTest = HotKeyManagerTest;

TEST_F(HotKeyManagerDeathTest, AKeyCodeOutOfRangeStopsTheProcess)
{
    ASSERT_TRUE(manager.start());
    EXPECT_DEATH(taps.keyDown(65536, option), "65536");
    EXPECT_DEATH(taps.keyUp(-1, option), "-1");
}

TEST_F(HotKeyManagerTest, TheLastKeyCodeInRangeIsAccepted)
{
    ASSERT_TRUE(manager.setChord({65535, 0}));
    ASSERT_TRUE(manager.start());
    EXPECT_EQ(taps.keyDown(65535, 0), TapVerdict::swallow);
}

} // namespace
} // namespace corvandi::testing
