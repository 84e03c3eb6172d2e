// The hotkey stays the program's whatever else wants it, and never takes the keyboard with it.

#include "good_enough.h"
#include "session.h"

#include "harness/key_grab.h"

#include <algorithm>
#include <csignal>

namespace corvandi::testing {
namespace {

using namespace harness;
using namespace std::chrono_literals;
using Kind = TargetApplication::Kind;

/// Striking a key must reach the application this soon: far less than any time-out, and enough for a
/// machine under load.
constexpr auto atOnce = 250ms;

/// Strikes "a" and returns how long it took until the application had it.
std::chrono::nanoseconds timeToType(Session& session, const TargetApplication& target)
{
    const std::string before = target.text();
    const auto struck = session.keyboard().press(Key::a);
    session.keyboard().release(Key::a);
    if (!target.waitForText(before + "a"))
        throw HarnessError("a key never reached the application");
    return target.changes().back().at - struck;
}

class SignalWhileHeld : public ::testing::TestWithParam<int> {};

TEST_P(SignalWhileHeld, LeavesTheKeyboardWorkingAtOnce)
{
    Session session;
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    session.pressHotkey();
    session.program().waitForLine("first audio");
    session.program().process().signal(GetParam());
    if (GetParam() != SIGSTOP) {
        ASSERT_TRUE(session.program().process().waitUntilEnded());
    }

    // Still held: the key arrives as a chord with Alt, but it arrives.
    session.keyboard().strike(Key::a);
    target.settle(session.keyboard());
    const auto presses = target.keyPresses();
    EXPECT_TRUE(std::any_of(presses.begin(), presses.end(), [](const TargetApplication::KeyPress& press) {
        return press.symbol == static_cast<unsigned long>(Key::a) && press.withAlt;
    }));

    session.releaseHotkey();
    EXPECT_LT(timeToType(session, target), atOnce);
}

std::string nameOf(const ::testing::TestParamInfo<int>& info)
{
    switch (info.param) {
    case SIGTERM:
        return "Terminated";
    case SIGKILL:
        return "Killed";
    default:
        return "Stopped";
    }
}

INSTANTIATE_TEST_SUITE_P(Program, SignalWhileHeld, ::testing::Values(SIGTERM, SIGKILL, SIGSTOP), nameOf);

TEST(AProgramStoppedWhileTheHotkeyWasHeld, DictatesAgainWhenItContinues)
{
    Session session;
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    session.pressHotkey();
    session.program().waitForLine("first audio");
    session.program().process().signal(SIGSTOP);
    session.releaseHotkey();
    target.settle(session.keyboard());
    session.program().process().signal(SIGCONT);

    EXPECT_TRUE(
        saysWhatWasSaid(session.dictate(recordings::goForward(), target), recordings::goForward().reference));
}

TEST(Hotkey, WorksAfterTheWindowManagerThatHoldsItToo)
{
    Session session({"wm=openbox"});
    const TargetApplication target(Kind::qtField, session.folder());
    ASSERT_TRUE(isHeldWithAlt(Key::space));
    session.startProgram();
    const std::string text = session.dictate(recordings::goForward(), target);
    EXPECT_TRUE(saysWhatWasSaid(text, recordings::goForward().reference));
    EXPECT_EQ(target.text(), text);
}

TEST(Hotkey, WorksWhenTheWindowManagerWasRestarted)
{
    Session session({"wm=openbox"});
    const TargetApplication target(Kind::terminal, session.folder());
    session.startProgram();
    desktop::restart("wm");
    ASSERT_TRUE(isHeldWithAlt(Key::space));
    target.activate();
    const std::string text = session.dictate(recordings::goForward(), target);
    EXPECT_TRUE(saysWhatWasSaid(text, recordings::goForward().reference));
    EXPECT_EQ(target.text(), text);
}

TEST(Hotkey, WorksWhenTheLayoutWasSwitched)
{
    Session session;
    const TargetApplication target(Kind::terminal, session.folder());
    session.startProgram();
    for (const char* layout : {"de", "fr", "us"}) {
        (void)outputOf({"setxkbmap", "-layout", layout});
        const std::string text = session.dictate(recordings::digits(), target);
        EXPECT_TRUE(saysWhatWasSaid(text, recordings::digits().reference)) << layout;
    }
}

TEST(Hotkey, WorksOnAnotherLayoutFromTheStart)
{
    Session session({"layout=fr"});
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    const std::string text = session.dictate(recordings::goForward(), target);
    EXPECT_TRUE(saysWhatWasSaid(text, recordings::goForward().reference));
    EXPECT_EQ(target.text(), text);
}

TEST(Hotkey, ThatAnotherProgramHoldsIsTakenWhenThatIsGone)
{
    Session session;
    const TargetApplication target(Kind::terminal, session.folder());
    std::optional<KeyGrab> other(std::in_place, Key::space);
    session.startProgram();
    EXPECT_FALSE(session.program().lineWith("global hotkey activated"));
    other.reset();
    session.program().waitForLine("global hotkey activated");

    EXPECT_TRUE(
        saysWhatWasSaid(session.dictate(recordings::goForward(), target), recordings::goForward().reference));
}

} // namespace
} // namespace corvandi::testing
