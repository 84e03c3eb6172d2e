// The program is told to end, or killed, in each state of a dictation.

#include "data_folder.h"
#include "good_enough.h"
#include "model_server.h"
#include "session.h"

#include "harness/clipboard.h"

#include <csignal>
#include <thread>

namespace corvandi::testing {
namespace {

using namespace harness;
using namespace std::chrono_literals;
using Kind = TargetApplication::Kind;

enum class State { idle, recording, transcribing, polishing, waitingForKeys, typing, pasted };

const std::vector<std::pair<State, const char*>> states{
    {State::idle, "idle"},
    {State::recording, "recording"},
    {State::transcribing, "transcribing"},
    {State::polishing, "polishing"},
    {State::waitingForKeys, "waitingForKeys"},
    {State::typing, "typing"},
    {State::pasted, "pasted"},
};

/// How long the end may take, from the signal to the end of the process.
constexpr auto endLimit = 1s;

/// What the vocabulary makes of "meters": long enough to be still on its way when its beginning has arrived.
const std::string longWord = std::string(6000, 'x') + " end";

class EndingTest : public ::testing::TestWithParam<std::pair<State, const char*>> {
protected:
    EndingTest()
    {
        std::vector<std::string> preferences;
        if (is(State::polishing))
            preferences = {"cleanUpSentences=true", server_.preference()};
        if (is(State::pasted))
            preferences = {"insertion=paste"};
        writePreferences(preferences);
        if (is(State::typing))
            data_folder::write("vocab.json", R"({"global":[{"id":"6BA7B810-9DAD-11D1-80B4-00C04FD430C8",)"
                                             R"("from":"meters","to":")" +
                                                 longWord + R"("}],"apps":[]})");
        target.emplace(Kind::qtField, session.folder());
        modifiersBefore_ = session.keyboard().modifiers();
        session.startProgram();
    }

    [[nodiscard]] static bool is(State state) { return GetParam().first == state; }

    /// Goes on until the program is in the state.
    void reach()
    {
        if (is(State::idle))
            return;
        session.pressHotkey();
        session.program().waitForLine("first audio");
        desktop::playToEnd(recording.file);
        if (is(State::recording))
            return;
        if (is(State::waitingForKeys))
            session.keyboard().press(Key::leftShift);
        session.releaseHotkey();
        if (is(State::polishing))
            session.program().waitForLine("Corvandi: Polishing");
        // The history is written right before the keys are waited for.
        if (is(State::waitingForKeys))
            while (data_folder::history().empty())
                std::this_thread::sleep_for(1ms);
        if (is(State::typing))
            (void)waitUntilTextIs([](const std::string& text) { return text.size() > 40; });
        if (is(State::pasted))
            session.program().waitForLine("text inserted");
    }
    [[nodiscard]] bool waitUntilTextIs(const std::function<bool(const std::string&)>& wanted) const
    {
        const auto deadline = Clock::now() + patience;
        while (!wanted(target->text())) {
            if (Clock::now() > deadline)
                return false;
            std::this_thread::sleep_for(1ms);
        }
        return true;
    }
    void letGoOfAllKeys()
    {
        for (const Key key : {Key::space, Key::leftAlt, Key::leftShift})
            session.keyboard().release(key);
    }

    const Recording recording = recordings::goForward();
    ModelServer server_{1min};
    Session session;
    std::optional<TargetApplication> target;
    unsigned modifiersBefore_ = 0;
};

TEST_P(EndingTest, IsQuickAndLosesNothing)
{
    reach();
    const auto told = Clock::now();
    session.program().process().signal(SIGTERM);
    EXPECT_EQ(session.program().process().waitUntilEnded(told + patience), 0);
    EXPECT_LT(Clock::now() - told, endLimit);
    letGoOfAllKeys();
    EXPECT_EQ(session.keyboard().modifiers(), modifiersBefore_);
    if (is(State::idle))
        return;
    const auto history = data_folder::history();
    ASSERT_EQ(history.size(), 1U);
    if (is(State::typing)) {
        // What can't be typed in the time that is left goes to the clipboard, which ends with the program
        // here.
        EXPECT_GT(history.front().size(), longWord.size());
        EXPECT_TRUE(history.front().starts_with(target->text()));
        return;
    }
    EXPECT_TRUE(saysWhatWasSaid(history.front(), recording.reference));
    EXPECT_EQ(target->text(), is(State::pasted) ? history.front() : "");
}

TEST_P(EndingTest, ByForceLeavesNothingBehindForTheNextStart)
{
    reach();
    // What nobody has fetched yet goes with the process.
    EXPECT_TRUE(!is(State::pasted) || waitUntilTextIs([](const std::string& text) { return !text.empty(); }));
    session.program().process().signal(SIGKILL);
    (void)session.program().process().waitUntilEnded();
    letGoOfAllKeys();
    session.startProgram();
    EXPECT_EQ(session.keyboard().modifiers(), modifiersBefore_);
    const std::string before = target->text();
    session.program().waitForLine("text inserted", session.speak(recordings::goSomewhere()));
    EXPECT_TRUE(waitUntilTextIs([&](const std::string& text) { return text.size() > before.size(); }));
}

INSTANTIATE_TEST_SUITE_P(States, EndingTest, ::testing::ValuesIn(states),
                         [](const auto& state) { return state.param.second; });

} // namespace
} // namespace corvandi::testing
