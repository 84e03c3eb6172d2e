// The speech engine hangs: the dictation ends in time, and later ones work once it goes on.

#include "data_folder.h"
#include "good_enough.h"
#include "session.h"

#include "harness/clipboard.h"
#include "harness/stopped_thread.h"

#include <optional>
#include <thread>

namespace corvandi::testing {
namespace {

using namespace harness;
using namespace std::chrono_literals;
using Kind = TargetApplication::Kind;

const char* const previously = "what the user had copied";
const char* const decoder = "speech decoder";

TEST(AnEngineThatHangs, IsWaitedForForFiveSecondsAndItsLateTextIsDropped)
{
    Session session;
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    clipboard::copy(previously);
    session.pressHotkey();
    session.program().waitForLine("first audio");
    desktop::playToEnd(recordings::goForward().file);
    std::optional<StoppedThread> hang(std::in_place, session.program().process().id(), decoder);
    const auto released = session.releaseHotkey();
    std::this_thread::sleep_for(1s);
    session.keepScreenshot("waiting");
    session.program().waitForLine("Corvandi: Transcription timed out.");
    EXPECT_GE(Clock::now() - released, 5s);
    hang.reset();

    const std::string text = session.dictate(recordings::digits(), target);
    EXPECT_TRUE(saysWhatWasSaid(text, recordings::digits().reference));
    EXPECT_EQ(target.text(), text);
    EXPECT_TRUE(data_folder::waitForHistory({text}));
    EXPECT_EQ(clipboard::text(), previously);
}

} // namespace
} // namespace corvandi::testing
