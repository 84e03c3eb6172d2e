#include "session/x11/keys/tap_fixture.h"

#include "session/x11/keys/keyboard_state.h"

#include <QProcess>

#include <csignal>
#include <stdexcept>

namespace corvandi::testing {
namespace {

using ::testing::Contains;
using ::testing::Not;

/// Another process that holds Option+Space.
class TapHolder {
public:
    TapHolder()
    {
        process_.start(QStringLiteral(TAP_HOLDER), {});
        if (!says("ready"))
            throw std::runtime_error("the holder does not start");
    }
    ~TapHolder()
    {
        process_.kill();
        process_.waitForFinished();
    }

    [[nodiscard]] bool says(const QByteArray& word)
    {
        return waitUntil([&] {
            heard_ += process_.readAllStandardOutput();
            return heard_.contains(word);
        });
    }
    void killAndWait()
    {
        process_.kill();
        process_.waitForFinished();
    }
    void leaveAndWait()
    {
        process_.closeWriteChannel();
        process_.waitForFinished();
    }
    void stop() const { ::kill(static_cast<pid_t>(process_.processId()), SIGSTOP); }
    void resume() const { ::kill(static_cast<pid_t>(process_.processId()), SIGCONT); }

private:
    QProcess process_;
    QByteArray heard_;
};

/// What becomes of the keyboard when the process that holds the chord does not answer any more.
class X11EventTapProcessTest : public ::testing::Test {
protected:
    void pressChord()
    {
        keyboard.press(key::leftAlt);
        keyboard.press(key::space);
    }
    void releaseChord()
    {
        keyboard.release(key::space);
        keyboard.release(key::leftAlt);
    }
    /// The server sees a process go when it next looks at its connections; until then it may be that
    /// keys are still kept for it.
    [[nodiscard]] bool soonReachesTheApplication(uint8_t keyCode)
    {
        return waitUntil([&] {
            keyboard.strike(keyCode);
            const auto presses = witness.takePresses();
            return std::find(presses.begin(), presses.end(), keyCode) != presses.end();
        });
    }
    void holdChord()
    {
        pressChord();
        ASSERT_TRUE(holder.says("down"));
        (void)witness.take();
    }

    KeyWitness witness;
    TestKeyboard keyboard{TestKeyboard::Kind::hardware};
    TapHolder holder;
};

TEST_F(X11EventTapProcessTest, AProcessKilledWhileTheChordIsHeldLeavesAWorkingKeyboard)
{
    holdChord();
    holder.killAndWait();
    keyboard.strike(key::a);
    EXPECT_THAT(witness.takePresses(), Contains(key::a));
    keyboard.release(key::space);
    EXPECT_TRUE(soonReachesTheApplication(key::space));
}

TEST_F(X11EventTapProcessTest, AProcessThatExitsWhileTheChordIsHeldLeavesAWorkingKeyboard)
{
    holdChord();
    holder.leaveAndWait();
    keyboard.strike(key::a);
    EXPECT_THAT(witness.takePresses(), Contains(key::a));
    keyboard.release(key::space);
    EXPECT_TRUE(soonReachesTheApplication(key::space));
}

TEST_F(X11EventTapProcessTest, AProcessStoppedWhileTheChordIsHeldLeavesAWorkingKeyboard)
{
    holdChord();
    holder.stop();
    keyboard.strike(key::a);
    EXPECT_THAT(witness.takePresses(), Contains(key::a));
    releaseChord();
    keyboard.strike(key::b);
    EXPECT_THAT(witness.takePresses(), Contains(key::b));

    holder.resume();
    EXPECT_TRUE(holder.says("up"));
}

TEST_F(X11EventTapProcessTest, AChordPressedWhileTheProcessIsStoppedHarmsNothingAfterItsRelease)
{
    holder.stop();
    pressChord();
    releaseChord();
    keyboard.strike(key::a);
    EXPECT_THAT(witness.takePresses(), Contains(key::a));
    EXPECT_THAT(witness.takePresses(), Not(Contains(key::space)));

    holder.resume();
    EXPECT_TRUE(holder.says("down"));
    EXPECT_TRUE(holder.says("up"));
}

TEST_F(X11EventTapProcessTest, AModifierReleasedFirstWhileTheProcessIsStoppedIsNotStuck)
{
    holder.stop();
    pressChord();
    keyboard.release(key::leftAlt);
    keyboard.release(key::space);
    holder.resume();
    EXPECT_TRUE(holder.says("up"));
    EXPECT_TRUE(waitUntil([this] { return readState(keyboard.connection())->held == 0; }));
    EXPECT_EQ(readState(keyboard.connection())->held, 0);
}

TEST_F(X11EventTapProcessTest, AProcessKilledWithAnUnansweredPressLeavesAWorkingKeyboard)
{
    holder.stop();
    pressChord();
    holder.killAndWait();
    EXPECT_TRUE(soonReachesTheApplication(key::a));
}

/// A display of its own, to be taken away.
class X11EventTapLostServerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        server.start(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1"),
                                              QStringLiteral("-nolisten"), QStringLiteral("tcp")});
        QByteArray number;
        ASSERT_TRUE(waitUntil([&] {
            number += server.readAllStandardOutput();
            return number.endsWith('\n');
        }));
        const QByteArray before = qgetenv("DISPLAY");
        qputenv("DISPLAY", ":" + number.trimmed());
        tap = taps.create(KeyChord{}, [](const KeyEvent&) { return TapVerdict::pass; });
        qputenv("DISPLAY", before);
        ASSERT_NE(tap, nullptr);
        tap->setEnabled(true);
    }
    void TearDown() override
    {
        server.kill();
        server.waitForFinished();
    }

    QProcess server;
    RecordingLog log;
    WatchedChord watched;
    X11EventTapFactory taps{log, watched};
    std::unique_ptr<EventTap> tap;
};

TEST_F(X11EventTapLostServerTest, ALostServerIsLoggedOnceAndTheTapStaysQuiet)
{
    server.terminate();
    ASSERT_TRUE(server.waitForFinished());
    const QString message = QStringLiteral("the hotkey's connection to the X server is lost");
    EXPECT_TRUE(waitUntil([&] { return log.contains(message); }));

    EXPECT_FALSE(tap->watch(KeyChord{96, 0}));
    tap->setEnabled(false);
    tap->setEnabled(true);
    runFor(std::chrono::milliseconds(50));
    const auto lines = log.lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), QStringLiteral("Corvandi: ") + message), 1);
}

TEST(X11EventTapWithoutServerTest, NoTapIsMadeWithoutAServer)
{
    const QByteArray before = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":12345");
    RecordingLog log;
    WatchedChord watched;
    X11EventTapFactory taps(log, watched);
    const auto tap = taps.create(KeyChord{}, [](const KeyEvent&) { return TapVerdict::pass; });
    qputenv("DISPLAY", before);
    EXPECT_EQ(tap, nullptr);
    EXPECT_TRUE(log.contains(QStringLiteral("no connection to the X server")));
}

} // namespace
} // namespace corvandi::testing
