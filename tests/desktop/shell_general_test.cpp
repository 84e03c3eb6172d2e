// The settings' General page changes what the running program does.

#include "good_enough.h"
#include "shell_session.h"

#include "harness/key_grab.h"

#include <cstdlib>
#include <fstream>
#include <thread>

namespace corvandi::testing {
namespace {

using namespace harness;
using namespace std::chrono_literals;
using Kind = TargetApplication::Kind;
using State = Accessible::State;

const Accessible::Sought hotkeyBox{"push button", "Dictation hotkey"};

std::string shownHotkey(ShellSession& session)
{
    return session.elements().waitFor(hotkeyBox).description();
}

void recordHotkey(ShellSession& session, const std::vector<Key>& chord, const std::string& description)
{
    session.click(hotkeyBox);
    ASSERT_TRUE(waitUntil([&] { return shownHotkey(session) == "Press keys…"; })) << shownHotkey(session);
    session.keyboard().strike(chord);
    EXPECT_TRUE(waitUntil([&] { return shownHotkey(session) == description; })) << shownHotkey(session);
}

/// Dictates with another hotkey than the usual one.
void expectDictationBy(ShellSession& session, const std::vector<Key>& chord, const TargetApplication& target)
{
    const std::string before = target.text();
    const size_t mark = session.program().mark();
    for (const Key key : chord)
        session.keyboard().press(key);
    session.program().waitForLine("first audio", mark);
    desktop::playToEnd(recordings::goForward().file);
    for (auto key = chord.rbegin(); key != chord.rend(); ++key)
        session.keyboard().release(*key);
    EXPECT_TRUE(saysWhatWasSaid(target.waitForAddition(before), recordings::goForward().reference));
}

void expectNothingBy(ShellSession& session, const std::vector<Key>& chord)
{
    const size_t mark = session.program().mark();
    for (const Key key : chord)
        session.keyboard().press(key);
    std::this_thread::sleep_for(500ms);
    for (auto key = chord.rbegin(); key != chord.rend(); ++key)
        session.keyboard().release(*key);
    // Closes the menu that the window manager has for the usual hotkey.
    session.keyboard().strike(Key::escape);
    EXPECT_EQ(session.program().mark(), mark) << session.program().log().substr(mark);
}

TEST(ARecordedHotkey, IsTheOneThatDictatesAtOnceAndAfterARestart)
{
    const std::vector<Key> usual{Key::leftAlt, Key::space};
    const std::vector<Key> recorded{Key::leftControl, Key::f9};
    ShellSession session;
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    session.openSettings();
    EXPECT_EQ(shownHotkey(session), "⌥Space");
    recordHotkey(session, recorded, "⌃Key 101");

    target.activate();
    expectDictationBy(session, recorded, target);
    expectNothingBy(session, usual);

    session.stopProgram();
    session.startProgram();
    target.activate();
    expectDictationBy(session, recorded, target);
    expectNothingBy(session, usual);
    session.openSettings();
    EXPECT_EQ(shownHotkey(session), "⌃Key 101");
}

TEST(AHotkeyThatTheWindowManagerHolds, CanBeRecordedAndDictates)
{
    // Closes the window that has the keyboard.
    const std::vector<Key> held{Key::leftAlt, Key::f4};
    ShellSession session;
    const TargetApplication target(Kind::qtField, session.folder());
    ASSERT_TRUE(isHeldWithAlt(Key::f4));
    session.startProgram();
    session.openSettings();
    recordHotkey(session, held, "⌥Key 118");
    EXPECT_TRUE(session.windows().isOpen(ShellSession::settingsTitle));

    target.activate();
    expectDictationBy(session, held, target);
}

TEST(TheUsualHotkey, CanBeRecordedAgainWhileItIsWatched)
{
    const std::vector<Key> usual{Key::leftAlt, Key::space};
    ShellSession session;
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    session.openSettings();
    recordHotkey(session, usual, "⌥Space");
    target.activate();
    expectDictationBy(session, usual, target);
}

class LaunchAtLogin : public ::testing::Test {
protected:
    static inline const Accessible::Sought toggle{"check box", "Launch at login"};

    [[nodiscard]] bool isOn() { return session.elements().waitFor(toggle).is(State::checked); }

    ShellSession session{{"audio=none"}};
    const std::filesystem::path folder = std::filesystem::path(std::getenv("XDG_CONFIG_HOME")) / "autostart";
    const std::filesystem::path entry = folder / "io.corvandi.Corvandi.desktop";
};

TEST_F(LaunchAtLogin, WritesAndRemovesTheAutostartEntry)
{
    session.startProgram();
    session.openSettings();
    EXPECT_FALSE(isOn());
    session.click(toggle);
    EXPECT_TRUE(waitUntil([&] { return isOn(); }));
    std::ifstream file(entry);
    const std::string content{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NE(content.find("Exec="), std::string::npos) << content;
    EXPECT_NE(content.find("/corvandi"), std::string::npos) << content;

    session.click(toggle);
    EXPECT_TRUE(waitUntil([&] { return !isOn(); }));
    EXPECT_FALSE(std::filesystem::exists(entry));
}

TEST_F(LaunchAtLogin, ThatCannotBeSetSaysWhyAndTheSwitchFlipsBack)
{
    std::ofstream(folder) << "a file in the folder's place";
    session.startProgram();
    session.openSettings();
    session.click(toggle);
    session.elements().waitFor(
        {"label", "The autostart entry can't be written: ", Accessible::Sought::Match::beginning});
    EXPECT_FALSE(isOn());
    session.program().waitForLine("Corvandi: launch-at-login change failed: ");
    session.keepScreenshot("refused");
}

} // namespace
} // namespace corvandi::testing
