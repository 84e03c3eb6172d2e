// A person holds the hotkey, speaks and releases it: the words appear in the application.

#include "good_enough.h"
#include "session.h"

#include "harness/windows.h"

#include <algorithm>
#include <thread>

namespace corvandi::testing {
namespace {

using namespace harness;
using namespace std::chrono_literals;
using Kind = TargetApplication::Kind;

bool sawTheHotkey(const TargetApplication& target)
{
    const auto presses = target.keyPresses();
    return std::any_of(presses.begin(), presses.end(), [](const TargetApplication::KeyPress& press) {
        return press.symbol == static_cast<unsigned long>(Key::space) && press.withAlt;
    });
}

class DictationInto : public ::testing::TestWithParam<Kind> {};

TEST_P(DictationInto, InsertsTheWordsAndNothingElse)
{
    Session session;
    const TargetApplication target(GetParam(), session.folder());
    session.startProgram();
    const std::string text = session.dictate(recordings::goForward(), target);
    session.stopProgram();
    target.settle(session.keyboard());

    EXPECT_TRUE(saysWhatWasSaid(text, recordings::goForward().reference));
    EXPECT_EQ(target.text(), text);
    EXPECT_FALSE(sawTheHotkey(target));
}

TEST_P(DictationInto, KeepsTheHotkeyAndItsRepeatsFromTheApplication)
{
    Session session;
    const TargetApplication target(GetParam(), session.folder());
    session.startProgram();
    session.pressHotkey();
    session.program().waitForLine("first audio");
    // Long enough for the server's own repeats: they start after 0.66 s, 25 a second.
    std::this_thread::sleep_for(1s);
    session.releaseHotkey();
    target.settle(session.keyboard());

    EXPECT_EQ(target.text(), "");
    EXPECT_FALSE(sawTheHotkey(target));
}

std::string nameOf(const ::testing::TestParamInfo<Kind>& info)
{
    switch (info.param) {
    case Kind::terminal:
        return "ATerminal";
    case Kind::qtField:
        return "AQtField";
    case Kind::gtkField:
        return "AGtkField";
    case Kind::qtForm:
        return "AQtForm";
    }
    return {};
}

INSTANTIATE_TEST_SUITE_P(Dictation, DictationInto,
                         ::testing::Values(Kind::terminal, Kind::qtField, Kind::gtkField), nameOf);

TEST(Dictation, WorksWhenOptionIsReleasedFirst)
{
    Session session;
    const TargetApplication target(Kind::terminal, session.folder());
    session.startProgram();
    const std::string text = session.dictate(recordings::goForward(), target, ReleaseOrder::optionFirst);

    EXPECT_TRUE(saysWhatWasSaid(text, recordings::goForward().reference));
    EXPECT_EQ(target.text(), text);
}

TEST(Dictation, ShowsItsPanelWhileTheHotkeyIsHeldAndLeavesTheFocusAlone)
{
    Session session;
    const TargetApplication target(Kind::qtField, session.folder());
    const Windows windows;
    const pid_t program = session.startProgram().process().id();
    EXPECT_FALSE(windows.isShown(program));

    const size_t mark = session.program().mark();
    session.pressHotkey();
    EXPECT_TRUE(windows.waitUntilShown(program));
    session.program().waitForLine("first audio", mark);
    desktop::playToEnd(recordings::goForward().file);
    EXPECT_EQ(windows.activeTitle(), "Qt target");
    session.keepScreenshot("recording");
    session.releaseHotkey();
    EXPECT_TRUE(saysWhatWasSaid(target.waitForAddition(""), recordings::goForward().reference));
    EXPECT_TRUE(windows.waitUntilHidden(program));
    session.keepScreenshot("inserted");
}

TEST(Dictation, WorksWithPipeWire)
{
    Session session({"audio=pipewire"});
    const TargetApplication target(Kind::terminal, session.folder());
    session.startProgram();

    EXPECT_TRUE(
        saysWhatWasSaid(session.dictate(recordings::goForward(), target), recordings::goForward().reference));
}

TEST(Dictation, WorksWithAnotherWindowManagerAndAPanel)
{
    Session session({"wm=xfwm4", "tray=xfce4-panel"});
    const TargetApplication target(Kind::terminal, session.folder());
    session.startProgram();

    EXPECT_TRUE(
        saysWhatWasSaid(session.dictate(recordings::goForward(), target), recordings::goForward().reference));
}

TEST(Dictation, OfAMinuteWithPausesArrivesWholeAndInOrder)
{
    Session session;
    const TargetApplication target(Kind::gtkField, session.folder());
    session.startProgram();
    std::vector<Recording> parts = recordings::novel();
    for (int i = 0; i < 2; ++i) {
        for (const Recording& part : {recordings::goForward(), recordings::goSomewhere(),
                                      recordings::digits(), recordings::moreAmiable()})
            parts.push_back(part);
    }
    const Recording minute = recordings::joined(parts, 600ms, session.folder());

    EXPECT_TRUE(saysWhatWasSaid(session.dictate(minute, target), minute.reference));
}

} // namespace
} // namespace corvandi::testing
