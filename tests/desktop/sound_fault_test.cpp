// The microphone or the sound server is missing, or goes away: the program lives on, and the next
// dictation works once there is sound again.

#include "good_enough.h"
#include "session.h"

#include "harness/clipboard.h"

#include "harness/windows.h"

#include <csignal>
#include <thread>

namespace corvandi::testing {
namespace {

using namespace harness;
using namespace std::chrono_literals;
using Kind = TargetApplication::Kind;

/// Holds the hotkey longer than the shortest dictation; the program must say why it comes to nothing.
void expectRefusal(Session& session, const TargetApplication& target)
{
    const Windows windows;
    const size_t mark = session.program().mark();
    session.pressHotkey();
    std::this_thread::sleep_for(500ms);
    session.releaseHotkey();
    session.program().waitForLine("no audio input available", mark);
    EXPECT_TRUE(windows.waitUntilHidden(session.program().process().id()));
    target.settle(session.keyboard());
    EXPECT_EQ(target.text(), "");
    EXPECT_FALSE(session.program().lineWith("first audio", mark));
    EXPECT_TRUE(session.program().process().isRunning());
}

void expectDictation(Session& session, const TargetApplication& target)
{
    const Recording recording = recordings::goForward();
    EXPECT_TRUE(saysWhatWasSaid(session.dictate(recording, target), recording.reference));
}

TEST(WithoutAMicrophone, NothingIsInsertedAndItWorksOnceOneIsPluggedIn)
{
    Session session({"mic=off"});
    const TargetApplication target(Kind::terminal, session.folder());
    session.startProgram();
    expectRefusal(session, target);
    desktop::plugMicrophone();
    expectDictation(session, target);
}

TEST(WithoutASoundServer, NothingIsInsertedAndItWorksOnceThereIsOne)
{
    Session session;
    desktop::end("sound");
    const TargetApplication target(Kind::terminal, session.folder());
    session.startProgram();
    expectRefusal(session, target);
    desktop::restart("sound");
    expectDictation(session, target);
}

TEST(ASoundServerKilledWhileRecording, EndsThatDictationOnly)
{
    Session session;
    const TargetApplication target(Kind::terminal, session.folder());
    session.startProgram();
    session.pressHotkey();
    session.program().waitForLine("first audio");
    const size_t mark = session.program().mark();
    for (const pid_t server : desktop::processesOf("sound"))
        ::kill(server, SIGKILL);
    session.program().waitForLine("recording ended", mark);
    session.releaseHotkey();
    EXPECT_TRUE(session.program().process().isRunning());

    desktop::restart("sound");
    expectDictation(session, target);
}

TEST(TheOnlyMicrophoneUnpluggedWhileRecording, LeavesWhatWasSaidBeforeOnTheClipboard)
{
    Session session;
    const TargetApplication target(Kind::terminal, session.folder());
    session.startProgram();
    const size_t mark = session.program().mark();
    session.pressHotkey();
    session.program().waitForLine("first audio", mark);
    desktop::playToEnd(recordings::goForward().file);
    desktop::unplugMicrophone();
    session.program().waitForLine("can't go on with another microphone", mark);
    session.releaseHotkey();
    session.program().waitForLine("Transcription incomplete. Partial text copied to the clipboard", mark);
    EXPECT_TRUE(saysWhatWasSaid(clipboard::text().value_or(""), recordings::goForward().reference));
    EXPECT_EQ(target.text(), "");

    desktop::plugMicrophone();
    expectDictation(session, target);
}

} // namespace
} // namespace corvandi::testing
