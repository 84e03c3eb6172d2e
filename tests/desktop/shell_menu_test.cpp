// The tray icon's menu, and the windows that come and go while the program stays.

#include "shell_session.h"

#include "harness/tray_menu.h"

#include <gmock/gmock.h>

namespace corvandi::testing {
namespace {

using namespace harness;
using ::testing::ElementsAre;

TEST(TheTraysMenu, TellsTheHotkeyOpensTheSettingsAndQuits)
{
    ShellSession session({"tray=xfce4-panel"});
    session.startProgram();
    const TrayMenu menu(session.program().process().id());
    EXPECT_TRUE(menu.waitForStatus("Hold ⌥Space to dictate"));
    EXPECT_THAT(menu.lines(), ElementsAre("Hold ⌥Space to dictate", "---", "Check for Updates…",
                                          "[Settings…] Control+,", "[Quit Corvandi] Control+Q"));
    session.keepScreenshot("tray");

    menu.choose("Settings…");
    session.elements().waitFor({"layered pane", "General"});
    EXPECT_TRUE(session.windows().waitUntilActive(ShellSession::settingsTitle));
    session.click({"push button", "Dictation hotkey"});
    ASSERT_TRUE(waitUntil([&] {
        return session.elements().waitFor({"push button", "Dictation hotkey"}).description() == "Press keys…";
    }));
    session.keyboard().strike({Key::leftControl, Key::f9});
    EXPECT_TRUE(menu.waitForStatus("Hold ⌃Key 101 to dictate"));

    menu.choose("Quit Corvandi");
    EXPECT_EQ(session.program().process().waitUntilEnded(), 0);
}

TEST(InAWaylandSession, TheMenuSaysThatNothingWorksAndTheProgramCanBeQuit)
{
    ShellSession session({"tray=xfce4-panel"});
    harness::Program program = session.launch({"env", "WAYLAND_DISPLAY=wayland-0"});
    program.waitForLine("this is a Wayland session, in which no hotkey can be watched yet");
    const TrayMenu menu(program.process().id());
    EXPECT_TRUE(
        menu.waitForStatus("Corvandi can't work in a Wayland session yet. Log in to an X11 session."));
    EXPECT_EQ(menu.lines().size(), 3U);
    EXPECT_FALSE(program.lineWith("Corvandi: ready"));

    menu.choose("Quit Corvandi");
    EXPECT_EQ(program.process().waitUntilEnded(), 0);
}

TEST(TheSettings, AreOneWindowThatKeepsItsPageAndClosingAllWindowsEndsNothing)
{
    ShellSession session;
    session.startProgram();
    const Accessible window = session.openSettings();
    session.choosePage("History");
    session.launchAgain();
    EXPECT_EQ(session.elements().findAll({"frame"}).size(), 1U);
    EXPECT_TRUE(session.elements().find({"layered pane", "History"}));

    session.closeWindow(ShellSession::settingsTitle);
    EXPECT_TRUE(session.program().process().isRunning());
    EXPECT_TRUE(session.openSettings() == window);
    EXPECT_TRUE(session.elements().find({"layered pane", "History"}));
    EXPECT_TRUE(session.windows().waitUntilActive(ShellSession::settingsTitle));

    session.closeWindow(ShellSession::settingsTitle);
    session.stopProgram();
}

} // namespace
} // namespace corvandi::testing
