#include "session/x11/keys/keyboard_loan.h"
#include "session/x11/keys/keyboard_state.h"
#include "session/x11/keys/keymap_reader.h"
#include "session/x11/keys/test_keyboard.h"
#include "session/x11/keys/x11_keyboard.h"
#include "support/event_loop.h"
#include "support/recording_log.h"

#include <QProcess>

#include <gmock/gmock.h>

#include <array>

#include <csignal>

namespace corvandi::testing {
namespace {

constexpr uint32_t slowAndBounceKeys = XCB_XKB_BOOL_CTRL_SLOW_KEYS | XCB_XKB_BOOL_CTRL_BOUNCE_KEYS;

/// What a program leaves on the keyboard that is killed.
class KilledTest : public ::testing::Test {
protected:
    ~KilledTest() override
    {
        if (isLocked())
            person.strike(key::capsLock);
    }

    void start(const QString& program, const QByteArray& word)
    {
        process.start(program, {});
        ASSERT_TRUE(waitUntil([&] { return process.readAllStandardOutput().contains(word); }));
    }
    void kill()
    {
        process.kill();
        ASSERT_TRUE(process.waitForFinished());
        person.connection().sync();
    }
    void startAgain()
    {
        X11Keyboard(log, watched, [] { return PasteShortcut::none; });
    }

    /// The server takes a moment to see that a program has died.
    template<class Condition>
    [[nodiscard]] bool aStartLeadsTo(Condition condition)
    {
        return waitUntil([&] {
            startAgain();
            return condition();
        });
    }

    [[nodiscard]] bool isLocked() { return (readState(person.connection())->locked & x11_mask::lock) != 0; }
    [[nodiscard]] std::vector<uint8_t> emptyKeys()
    {
        return readKeymap(person.connection(), XCB_XKB_ID_USE_CORE_KBD)->emptyKeys();
    }
    void setFilters(uint32_t filters)
    {
        setHelps(person.connection(), {filters, readHelps(person.connection())->stickyOptions});
        person.connection().sync();
    }

    RecordingLog log;
    WatchedChord watched;
    TestKeyboard person{TestKeyboard::Kind::hardware};
    QProcess process;
};

TEST_F(KilledTest, WhileTypingItsCharactersAndCapsLockComeBackWithTheNextStart)
{
    startAgain();
    const auto before = emptyKeys();
    person.strike(key::capsLock);
    start(QStringLiteral(TYPING_HOLDER), "typing");
    EXPECT_FALSE(isLocked());
    EXPECT_LT(emptyKeys().size(), before.size());
    kill();
    EXPECT_FALSE(isLocked());

    EXPECT_TRUE(aStartLeadsTo([&] { return isLocked() && emptyKeys() == before; }));
}

TEST_F(KilledTest, WhileTypingTheServerSwitchesTheHelpsOnAgain)
{
    setFilters(slowAndBounceKeys);
    start(QStringLiteral(TYPING_HOLDER), "typing");
    EXPECT_EQ(readHelps(person.connection())->filters, 0U);
    kill();
    EXPECT_TRUE(waitUntil([&] { return readHelps(person.connection())->filters == slowAndBounceKeys; }));
    setFilters(0);
    startAgain();
    EXPECT_EQ(readHelps(person.connection())->filters, 0U);
}

TEST_F(KilledTest, AProgramThatLivesKeepsWhatItHasBorrowed)
{
    const auto before = emptyKeys();
    start(QStringLiteral(TYPING_HOLDER), "typing");
    const auto during = emptyKeys();
    startAgain();
    EXPECT_EQ(emptyKeys(), during);
    kill();
    EXPECT_TRUE(aStartLeadsTo([&] { return emptyKeys() == before; }));
}

TEST_F(KilledTest, StoppedWithTheHotkeyDownItsModifierIsFreeAfterTheNextStart)
{
    start(QStringLiteral(TAP_HOLDER), "ready");
    ::kill(static_cast<pid_t>(process.processId()), SIGSTOP);
    person.press(key::leftAlt);
    person.press(key::space);
    person.release(key::leftAlt);
    person.release(key::space);
    kill();
    EXPECT_EQ(readState(person.connection())->held, x11_mask::alt);
    EXPECT_TRUE(aStartLeadsTo([&] { return readState(person.connection())->held == x11_mask::none; }));
}

TEST_F(KilledTest, AModifierThatAPersonHoldsStaysDown)
{
    person.press(key::leftShift);
    startAgain();
    EXPECT_EQ(readState(person.connection())->held, x11_mask::shift);
}

} // namespace
} // namespace corvandi::testing
