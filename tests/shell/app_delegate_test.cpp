#include "shell/app_delegate.h"

#include "core/dictation/dictation_fixture.h"
#include "shell/fake_windows.h"

#include <algorithm>

namespace corvandi::testing {
namespace {

/// The program's delegate on a platform of fakes; nothing is running yet.
class AppDelegateTest : public DictationFixture {
protected:
    void completeEarlier() { defaults.persistent[QStringLiteral("didCompleteWelcome")] = true; }
    void launch()
    {
        delegate->applicationDidFinishLaunching();
        queue.drain();
    }
    void getStarted()
    {
        // The callback may replace itself.
        const auto call = windows.getStarted;
        call();
        queue.drain();
    }
    void closeSettings()
    {
        windows.settings->close();
        queue.drain();
    }
    [[nodiscard]] bool isHotkeyInstalled() const { return taps.watched.has_value(); }
    [[nodiscard]] bool isPreparing() const
    {
        return !std::holds_alternative<model_state::Pending>(controller->modelState());
    }
    [[nodiscard]] long count(const char* event) const
    {
        return std::count(events.begin(), events.end(), event);
    }

    Events events;
    FakeActivationPolicy policy{events};
    FakeWindows windows{events};
    PermissionsModel permissions{microphone, accessibility};
    SettingsNavigator navigator;
    int controllersMade = 0;
    std::shared_ptr<AppDelegate> delegate =
        AppDelegate::create({queue, defaults, permissions, navigator, policy, windows}, [this] {
            ++controllersMade;
            return controller;
        });
};

TEST_F(AppDelegateTest, ThePermissionsAreLookedAtInTheBeginning)
{
    EXPECT_TRUE(permissions.allGranted());
    EXPECT_TRUE(events.empty());
}

TEST_F(AppDelegateTest, TheFirstRunShowsTheWelcomeAndDoesNothingElse)
{
    launch();
    EXPECT_EQ(events, (Events{"regular", "make welcome", "center welcome", "activate welcome"}));
    EXPECT_EQ(controllersMade, 0);
    EXPECT_FALSE(isHotkeyInstalled());
    EXPECT_FALSE(isPreparing());
}

TEST_F(AppDelegateTest, TheWelcomeLooksAtThePermissionsAgain)
{
    accessibility.trusted = false;
    launch();
    EXPECT_EQ(permissions.accessibility(), PermissionState::denied);
}

TEST_F(AppDelegateTest, LaterRunsStartAsAnAgentWithHotkeyAndModel)
{
    completeEarlier();
    launch();
    EXPECT_EQ(events, Events{"accessory"});
    EXPECT_EQ(controllersMade, 1);
    EXPECT_TRUE(isHotkeyInstalled());
    EXPECT_TRUE(isPreparing());
}

TEST_F(AppDelegateTest, TheHotkeyOfTheSettingsIsInForceWhenTheTapStarts)
{
    completeEarlier();
    settings.setHotkeyKeyCode(2);
    launch();
    EXPECT_EQ(taps.watched->keyCode, 2);
}

TEST_F(AppDelegateTest, ARefusedHotkeyIsToldAndWaitedForAndTheModelIsPreparedAllTheSame)
{
    completeEarlier();
    taps.refusesTaps = true;
    launch();
    EXPECT_TRUE(log.contains(
        QStringLiteral("Corvandi: global hotkey not active yet; waiting for Accessibility permission")));
    EXPECT_TRUE(isPreparing());
    taps.refusesTaps = false;
    queue.advance(2s);
    EXPECT_TRUE(isHotkeyInstalled());
}

TEST_F(AppDelegateTest, CompletingTheWelcomeOpensTheSettingsAndStartsDictation)
{
    launch();
    events.clear();
    getStarted();
    EXPECT_EQ(defaults.persistent[QStringLiteral("didCompleteWelcome")], DefaultsValue(true));
    EXPECT_EQ(windows.welcome, nullptr);
    EXPECT_TRUE(windows.settings->isVisible());
    EXPECT_EQ(navigator.pane(), SettingsPane::general);
    EXPECT_TRUE(isHotkeyInstalled());
    EXPECT_TRUE(isPreparing());
    EXPECT_EQ(policy.present, ActivationMode::regular);
}

TEST_F(AppDelegateTest, TheFlagIsWrittenBeforeTheWelcomeClosesAndTheSettingsOpenLater)
{
    launch();
    events.clear();
    const auto call = windows.getStarted;
    call();
    EXPECT_EQ(events, Events{"close welcome"});
    EXPECT_TRUE(isHotkeyInstalled());
    queue.drain();
    EXPECT_EQ(count("make settings"), 1);
}

TEST_F(AppDelegateTest, ClosingTheWelcomeDoesNotCompleteIt)
{
    launch();
    windows.welcome->close();
    queue.drain();
    EXPECT_FALSE(defaults.persistent.contains(QStringLiteral("didCompleteWelcome")));
    EXPECT_FALSE(isHotkeyInstalled());
    EXPECT_EQ(policy.present, ActivationMode::accessory);
    EXPECT_EQ(windows.settings, nullptr);
}

TEST_F(AppDelegateTest, TheSettingsAreOneWindowThatIsCenteredAndRaisedEachTime)
{
    completeEarlier();
    launch();
    delegate->showSettings();
    delegate->showSettings();
    EXPECT_EQ(count("make settings"), 1);
    EXPECT_EQ(count("center settings"), 2);
    EXPECT_EQ(count("activate settings"), 2);
}

TEST_F(AppDelegateTest, TheSettingsWindowIsKeptWhenItIsClosed)
{
    completeEarlier();
    launch();
    delegate->showSettings();
    closeSettings();
    delegate->showSettings();
    EXPECT_EQ(count("make settings"), 1);
    EXPECT_TRUE(windows.settings->isVisible());
}

TEST_F(AppDelegateTest, TheSettingsOpenOnTheFirstPageInANewWindow)
{
    completeEarlier();
    launch();
    navigator.setPane(SettingsPane::history);
    delegate->showSettings();
    EXPECT_EQ(navigator.pane(), SettingsPane::general);
}

TEST_F(AppDelegateTest, AnOpenWindowKeepsItsPageUnlessOneIsGiven)
{
    completeEarlier();
    launch();
    delegate->showSettings(SettingsPane::history);
    EXPECT_EQ(navigator.pane(), SettingsPane::history);
    delegate->showSettings();
    EXPECT_EQ(navigator.pane(), SettingsPane::history);
    delegate->showSettings(SettingsPane::permissions);
    EXPECT_EQ(navigator.pane(), SettingsPane::permissions);
}

TEST_F(AppDelegateTest, AWindowMakesTheProgramAnOrdinaryApplicationUntilItCloses)
{
    completeEarlier();
    launch();
    delegate->showSettings();
    EXPECT_EQ(policy.present, ActivationMode::regular);
    windows.settings->close();
    EXPECT_EQ(policy.present, ActivationMode::regular);
    queue.drain();
    EXPECT_EQ(policy.present, ActivationMode::accessory);
}

TEST_F(AppDelegateTest, ClosingOneOfTwoWindowsChangesNothing)
{
    launch();
    delegate->showSettings();
    closeSettings();
    EXPECT_EQ(policy.present, ActivationMode::regular);
    windows.welcome->close();
    queue.drain();
    EXPECT_EQ(policy.present, ActivationMode::accessory);
}

TEST_F(AppDelegateTest, ASecondLaunchOpensTheSettings)
{
    completeEarlier();
    launch();
    delegate->applicationWasLaunchedAgain();
    EXPECT_TRUE(windows.settings->isVisible());
}

TEST_F(AppDelegateTest, ASecondLaunchBeforeTheWelcomeIsCompletedBringsItBack)
{
    launch();
    windows.welcome->close();
    queue.drain();
    delegate->applicationWasLaunchedAgain();
    EXPECT_TRUE(windows.welcome->isVisible());
    EXPECT_EQ(count("make welcome"), 1);
    EXPECT_EQ(windows.settings, nullptr);
}

TEST_F(AppDelegateTest, WhatWasDeferredIsDroppedWhenTheDelegateHasGone)
{
    launch();
    const auto call = windows.getStarted;
    call();
    delegate.reset();
    queue.drain();
    EXPECT_EQ(count("make settings"), 0);
    call();
    EXPECT_EQ(windows.settings, nullptr);
}

TEST_F(AppDelegateTest, TheControllerIsMadeOnce)
{
    EXPECT_FALSE(delegate->hasController());
    (void)delegate->controller();
    (void)delegate->controller();
    EXPECT_EQ(controllersMade, 1);
}

} // namespace
} // namespace corvandi::testing
