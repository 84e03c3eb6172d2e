// Something that the program needs is broken or missing when it starts, or vanishes.

#include "good_enough.h"
#include "session.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>

namespace corvandi::testing {
namespace {

using namespace harness;
using namespace std::chrono_literals;
using Kind = TargetApplication::Kind;

void expectDictation(Session& session)
{
    const TargetApplication target(Kind::terminal, session.folder());
    const Recording recording = recordings::goForward();
    EXPECT_TRUE(saysWhatWasSaid(session.dictate(recording, target), recording.reference));
}

std::string contentsOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::filesystem::path preferencesFolder()
{
    return std::filesystem::path(std::getenv("XDG_CONFIG_HOME")) / "Corvandi";
}

TEST(CorruptPreferences, AreToldAndNotLostAndTheProgramWorks)
{
    Session session;
    const std::string garbage =
        "[General]\ndidCompleteWelcome=true\n[Gene\n\x01\x02=\xff\xfe\nhotKeyCode=[1,2\n";
    std::filesystem::create_directories(preferencesFolder());
    std::ofstream(preferencesFolder() / "Corvandi.conf", std::ios::binary) << garbage;
    session.startProgram();
    expectDictation(session);

    session.program().waitForLine("Corvandi.conf", 0, 0s);
    const std::filesystem::directory_iterator files(preferencesFolder());
    EXPECT_TRUE(std::any_of(begin(files), end(files), [&](const std::filesystem::directory_entry& file) {
        return contentsOf(file) == garbage;
    }));
}

TEST(WithoutASessionBus, TheProgramWorks)
{
    Session session({"dbus=off"});
    session.startProgram();
    expectDictation(session);
}

TEST(WithoutAnAccessibilityBus, TheProgramStartsAndSaysSo)
{
    Session session({"a11y=absent"});
    session.startProgram();
    session.program().waitForLine("ccessibility");
    EXPECT_TRUE(session.program().process().isRunning());
}

TEST(WithoutADisplay, TheProgramSaysSoAndEnds)
{
    Session session;
    Program program = session.launch({"env", "-u", "DISPLAY"});
    const auto status = program.process().waitUntilEnded();

    ASSERT_TRUE(status);
    EXPECT_GT(*status, 0);
    EXPECT_LT(*status, 128) << "ended by a signal";
    EXPECT_TRUE(program.lineWith("display")) << program.log();
}

TEST(ADisplayThatDoesNotAnswer, IsToldFromTheProgramEnding)
{
    Session session;
    Program program = session.launch({"env", "DISPLAY=:987654"});
    const auto status = program.process().waitUntilEnded();

    ASSERT_TRUE(status);
    EXPECT_GT(*status, 0);
    EXPECT_LT(*status, 128) << "ended by a signal";
    EXPECT_TRUE(program.lineWith("display")) << program.log();
}

TEST(ADisplayThatIsLost, EndsTheProgramWithALine)
{
    Session session;
    session.startProgram();
    const size_t mark = session.program().mark();
    for (const pid_t server : desktop::processesOf("display"))
        ::kill(server, SIGKILL);
    const auto status = session.program().process().waitUntilEnded();

    ASSERT_TRUE(status) << "it hangs";
    EXPECT_LT(*status, 128) << "ended by a signal";
    EXPECT_TRUE(session.program().lineWith("X11 connection broke", mark)) << session.program().log();
}

TEST(ASecondInstance, EndsAndLeavesTheFirstWorking)
{
    Session session;
    session.startProgram();
    Program second = session.launch();
    EXPECT_EQ(second.process().waitUntilEnded(), 0);
    EXPECT_TRUE(second.lineWith("running")) << second.log();
    expectDictation(session);
}

bool canMountForOneProgram()
{
    try {
        (void)outputOf({"unshare", "--mount", "true"});
        return true;
    } catch (const HarnessError&) {
        return false;
    }
}

/// The program finds the model at a fixed place, so an empty folder is mounted over it, for the
/// program alone. Only root may do that, and not inside every container.
TEST(AMissingSpeechModel, IsToldAndTheProgramLivesOn)
{
    if (!canMountForOneProgram())
        GTEST_SKIP() << "the model can't be hidden from the program here";
    Session session;
    const TargetApplication target(Kind::terminal, session.folder());
    const auto empty = session.folder() / "empty";
    std::filesystem::create_directory(empty);
    Program program =
        session.launch({"unshare", "--mount", "sh", "-c",
                        "mount --bind '" + empty.string() + "' '" CORVANDI_SPEECH_MODEL "' && exec \"$0\""});
    program.waitForLine("Corvandi: ready");
    session.pressHotkey();
    program.waitForLine("model");
    session.releaseHotkey();
    target.settle(session.keyboard());

    EXPECT_EQ(target.text(), "");
    EXPECT_TRUE(program.process().isRunning());
}

} // namespace
} // namespace corvandi::testing
