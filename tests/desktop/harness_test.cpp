// What the desktop tests rely on, without the program under test: keys arrive in real applications and
// are read back, the microphone can be heard, nothing outlives a test.

#include "session.h"

#include "harness/windows.h"
#include "harness/word_errors.h"

#include <gtest/gtest.h>

#include <csignal>

namespace corvandi::testing {
namespace {

using namespace harness;
using Kind = TargetApplication::Kind;

class EveryTarget : public ::testing::TestWithParam<Kind> {};

TEST_P(EveryTarget, RecordsTypedText)
{
    Session session({"audio=none"});
    const TargetApplication target(GetParam(), session.folder());
    for (int i = 0; i < 3; ++i)
        session.keyboard().strike(Key::a);
    session.keyboard().strike(Key::space);
    target.settle(session.keyboard());

    EXPECT_EQ(target.text(), "aaa ");
    // A terminal may hand over several keys at once.
    EXPECT_GE(target.changes().size(), 1U);
}

TEST_P(EveryTarget, TellsWhenTheTextChanged)
{
    Session session({"audio=none"});
    const TargetApplication target(GetParam(), session.folder());
    const auto struck = session.keyboard().press(Key::a);
    session.keyboard().release(Key::a);
    ASSERT_TRUE(target.waitForText("a"));

    EXPECT_GT(target.changes().front().at, struck);
    EXPECT_LT(target.changes().front().at, Clock::now());
}

TEST_P(EveryTarget, GetsTheKeyboardBack)
{
    Session session({"audio=none"});
    const TargetApplication target(GetParam(), session.folder());
    const TargetApplication other(GetParam() == Kind::terminal ? Kind::qtField : Kind::terminal,
                                  session.folder());
    session.keyboard().strike(Key::a);
    other.settle(session.keyboard());
    target.activate();
    target.settle(session.keyboard());

    EXPECT_EQ(other.text(), "a");
    EXPECT_EQ(target.text(), "");
}

std::string nameOf(const ::testing::TestParamInfo<Kind>& info)
{
    switch (info.param) {
    case Kind::terminal:
        return "Terminal";
    case Kind::qtField:
        return "QtField";
    case Kind::gtkField:
        return "GtkField";
    case Kind::qtForm:
        return "QtForm";
    }
    return {};
}

INSTANTIATE_TEST_SUITE_P(Targets, EveryTarget,
                         ::testing::Values(Kind::terminal, Kind::qtField, Kind::gtkField), nameOf);

TEST(TextFields, TellWhichKeysReachedThem)
{
    for (const Kind kind : {Kind::qtField, Kind::gtkField}) {
        // Without a window manager nobody keeps the chord.
        Session session({"audio=none"});
        const TargetApplication target(kind, session.folder());
        session.keyboard().press(Key::leftAlt);
        session.keyboard().strike(Key::a);
        session.keyboard().release(Key::leftAlt);
        target.settle(session.keyboard());

        const auto presses = target.keyPresses();
        ASSERT_EQ(presses.size(), 3U);
        EXPECT_EQ(presses[0].symbol, static_cast<unsigned long>(Key::leftAlt));
        EXPECT_EQ(presses[1].symbol, static_cast<unsigned long>(Key::a));
        EXPECT_TRUE(presses[1].withAlt);
    }
}

TEST(Microphone, PlaysARecordingInItsOwnTime)
{
    const Session session;
    const auto start = Clock::now();
    desktop::playToEnd(recordings::goForward().file);

    EXPECT_GT(Clock::now() - start, std::chrono::milliseconds(2700));
}

TEST(Recordings, AreJoinedInOrderWithPauses)
{
    const Session session;
    const auto parts = recordings::novel();
    const Recording whole = recordings::joined(parts, std::chrono::seconds(1), session.folder());

    // 16,000 frames of two bytes per second, behind a header of 44: 24.73 s of speech, 4 s of pauses.
    EXPECT_NEAR(static_cast<double>(std::filesystem::file_size(whole.file) - 44) / 32000, 28.73, 0.05);
    EXPECT_EQ(wordErrors(whole.reference, whole.reference), 0U);
    EXPECT_TRUE(whole.reference.ends_with(parts.back().reference));
}

TEST(WordErrors, CountsReplacedMissingAndAdditionalWords)
{
    EXPECT_EQ(wordErrors("go forward ten meters", "Go forward, ten meters."), 0U);
    EXPECT_EQ(wordErrors("go forward ten meters", "go backward ten meters"), 1U);
    EXPECT_EQ(wordErrors("go forward ten meters", "go ten"), 2U);
    EXPECT_EQ(wordErrors("go forward", "please go forward now"), 2U);
    EXPECT_EQ(wordErrors("a b c", ""), 3U);
    EXPECT_EQ(wordErrors("don't", "Dont"), 0U);
}

TEST(Windows, OfAProcessAreSeenAndMissed)
{
    Session session({"audio=none"});
    const Windows windows;
    EXPECT_FALSE(windows.isShown(::getpid()));
    const TargetApplication target(Kind::qtField, session.folder());

    EXPECT_TRUE(windows.waitUntilShown(target.processId()));
    ::kill(target.processId(), SIGKILL);
    EXPECT_TRUE(windows.waitUntilHidden(target.processId()));
}

TEST(Program, LogIsReadLineByLineAndEndsWithItsStatus)
{
    const Session session({"audio=none"});
    Program program({"sh", "-c", "echo Corvandi: one; echo Corvandi: first audio 57ms after; exit 3"},
                    session.folder() / "log");

    EXPECT_EQ(millisecondsIn(program.waitForLine("first audio")), std::chrono::milliseconds(57));
    EXPECT_EQ(program.process().waitUntilEnded(), 3);
    EXPECT_FALSE(program.lineWith("one", program.mark()));
    EXPECT_THROW(program.waitForLine("two", 0, std::chrono::seconds(0)), HarnessError);
}

} // namespace
} // namespace corvandi::testing
