// The microphone or the sound server is missing, or goes away: the program lives on, and the next
// dictation works once there is sound again.

#include "good_enough.h"
#include "session.h"

#include "harness/windows.h"

#include <csignal>

namespace corvandi::testing {
namespace {

using namespace harness;
using namespace std::chrono_literals;
using Kind = TargetApplication::Kind;

/// Holds the hotkey until the program has given up on the sound, which it must say.
void expectRefusal(Session& session, const TargetApplication& target)
{
    const Windows windows;
    const size_t mark = session.program().mark();
    session.pressHotkey();
    session.program().waitForLine("audio", mark);
    session.releaseHotkey();
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
    session.program().waitForLine("audio", mark);
    session.releaseHotkey();
    EXPECT_TRUE(session.program().process().isRunning());

    desktop::restart("sound");
    expectDictation(session, target);
}

TEST(AMicrophoneUnpluggedWhileRecording, KeepsWhatWasSaidBefore)
{
    Session session;
    const TargetApplication target(Kind::terminal, session.folder());
    session.startProgram();
    const size_t mark = session.program().mark();
    session.pressHotkey();
    session.program().waitForLine("first audio", mark);
    desktop::playToEnd(recordings::goForward().file);
    desktop::unplugMicrophone();
    session.releaseHotkey();
    session.waitUntilInserted(target, mark);
    EXPECT_TRUE(saysWhatWasSaid(target.text(), recordings::goForward().reference));

    desktop::plugMicrophone();
    expectDictation(session, target);
}

} // namespace
} // namespace corvandi::testing
