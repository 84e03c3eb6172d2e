// Dictations in a row, and presses that are none.

#include "good_enough.h"
#include "session.h"

#include "harness/windows.h"

#include <thread>

namespace corvandi::testing {
namespace {

using namespace harness;
using namespace std::chrono_literals;
using Kind = TargetApplication::Kind;

TEST(TwoDictations, BothArriveInOrderWhenTheSecondBeginsWhileTheFirstIsTranscribed)
{
    Session session;
    const TargetApplication target(Kind::terminal, session.folder());
    session.startProgram();
    const size_t first = session.speak(recordings::goForward());
    session.speak(recordings::goSomewhere());
    session.program().waitForLines("text inserted", 2, first);
    const std::string said = recordings::goForward().reference + ' ' + recordings::goSomewhere().reference;

    EXPECT_TRUE(saysWhatWasSaid(target.waitForAddition(""), said));
}

TEST(ThreeDictations, ArriveOneAfterTheOther)
{
    Session session;
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    for (const Recording& recording :
         {recordings::goForward(), recordings::goSomewhere(), recordings::digits()})
        EXPECT_TRUE(saysWhatWasSaid(session.dictate(recording, target), recording.reference));
}

TEST(AShortPress, DoesNothingAndTheNextDictationWorks)
{
    Session session;
    const TargetApplication target(Kind::qtField, session.folder());
    const Windows windows;
    const pid_t program = session.startProgram().process().id();
    ChildProcess speech = desktop::play(recordings::goForward().file);
    session.pressHotkey();
    std::this_thread::sleep_for(200ms);
    session.releaseHotkey();
    EXPECT_TRUE(windows.waitUntilHidden(program));
    EXPECT_EQ(speech.waitUntilEnded(), 0);
    target.settle(session.keyboard());
    EXPECT_EQ(target.text(), "");
    EXPECT_FALSE(session.program().lineWith("text inserted"));

    const std::string text = session.dictate(recordings::digits(), target);
    EXPECT_TRUE(saysWhatWasSaid(text, recordings::digits().reference));
    EXPECT_EQ(target.text(), text);
}

} // namespace
} // namespace corvandi::testing
