#include "session/x11/windows/x11_session_lock.h"

#include "screen_locker.h"
#include "support/event_loop.h"
#include "support/fake_session_lock.h"
#include "system/process/qt_main_queue.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <stdexcept>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using testing::FakeSessionLock;
using testing::runFor;
using testing::ScreenLocker;
using testing::waitUntil;
using Window = ScreenLocker::Window;

class X11SessionLockTest : public ::testing::Test {
protected:
    QtMainQueue queue;
    FakeSessionLock told;
    X11SessionLock lock{queue, told};
};

TEST_F(X11SessionLockTest, AnEmptyDesktopIsNotLocked)
{
    EXPECT_FALSE(lock.isLocked());
}

TEST_F(X11SessionLockTest, TheDesktopsWordCounts)
{
    told.set(true);
    EXPECT_TRUE(lock.isLocked());
}

TEST_F(X11SessionLockTest, WhatTheDesktopSaysIsPassedOnAtOnce)
{
    int changes = 0;
    const auto registration = lock.onChange([&] { ++changes; });
    told.set(true);
    EXPECT_EQ(changes, 1);
}

TEST_F(X11SessionLockTest, AWindowOverEverythingThatHoldsKeyboardAndPointerIsALock)
{
    const auto locker = ScreenLocker::coveringTheScreen();
    EXPECT_TRUE(lock.isLocked());
}

TEST_F(X11SessionLockTest, AWindowOverEverythingWithoutAPictureIsALock)
{
    ScreenLocker locker(Window::withoutPicture, ScreenLocker::wholeScreen());
    locker.holdKeyboard();
    locker.holdPointer();
    EXPECT_TRUE(lock.isLocked());
}

TEST_F(X11SessionLockTest, AWindowOverEverythingThatHoldsNothingIsNone)
{
    const ScreenLocker slides(Window::unmanaged, ScreenLocker::wholeScreen());
    EXPECT_FALSE(lock.isLocked());
}

TEST_F(X11SessionLockTest, AMenuIsNone)
{
    ScreenLocker menu(Window::unmanaged, {100, 100, 200, 300});
    menu.holdKeyboard();
    menu.holdPointer();
    EXPECT_FALSE(lock.isLocked());
}

TEST_F(X11SessionLockTest, AMenuWhoseProgramHasAWindowBesideTheScreenForItIsNone)
{
    ScreenLocker menu(Window::unmanaged, {100, 100, 200, 300});
    const ScreenLocker holder(Window::withoutPicture, {-100, -100, 1, 1});
    menu.holdKeyboard();
    menu.holdPointer();
    EXPECT_FALSE(lock.isLocked());
}

TEST_F(X11SessionLockTest, AFullScreenGameThatHoldsKeyboardAndPointerIsNone)
{
    ScreenLocker game(Window::managed, ScreenLocker::wholeScreen());
    game.holdKeyboard();
    game.holdPointer();
    EXPECT_FALSE(lock.isLocked());
}

TEST_F(X11SessionLockTest, AMenuOverAFullScreenVideoIsNone)
{
    const ScreenLocker video(Window::managed, ScreenLocker::wholeScreen());
    ScreenLocker menu(Window::unmanaged, {100, 100, 200, 300});
    menu.holdKeyboard();
    menu.holdPointer();
    EXPECT_FALSE(lock.isLocked());
}

TEST_F(X11SessionLockTest, AMenuUnderAnOverlayThatLetsInputThroughIsNone)
{
    ScreenLocker overlay(Window::unmanaged, ScreenLocker::wholeScreen());
    overlay.letInputThrough();
    ScreenLocker menu(Window::unmanaged, {100, 100, 200, 300});
    menu.holdKeyboard();
    menu.holdPointer();
    EXPECT_FALSE(lock.isLocked());
}

TEST_F(X11SessionLockTest, APasswordPromptThatHoldsTheKeyboardIsNone)
{
    ScreenLocker prompt(Window::managed, {100, 100, 300, 200});
    prompt.holdKeyboard();
    EXPECT_FALSE(lock.isLocked());
}

TEST_F(X11SessionLockTest, AskingTakesNothingFromAnybody)
{
    ASSERT_FALSE(lock.isLocked());
    ScreenLocker program(Window::unmanaged, {100, 100, 200, 300});
    EXPECT_NO_THROW(program.holdKeyboard());
    EXPECT_NO_THROW(program.holdPointer());
}

/// What xscreensaver writes on the root window; the time and the pictures follow.
class XScreenSaverNoteTest : public X11SessionLockTest {
protected:
    ~XScreenSaverNoteTest() override { xcb_delete_property(x.get(), x.root(), status), x.sync(); }
    void write(xcb_atom_t state)
    {
        const uint32_t note[] = {state, 1795312494, 0};
        xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, x.root(), status, XCB_ATOM_INTEGER, 32, 3, note);
        x.sync();
    }

    XcbConnection x;
    xcb_atom_t status = x.atom("_SCREENSAVER_STATUS");
    /// One screen of two.
    ScreenLocker saver{Window::unmanaged, {0, 0, 300, 300}};
};

TEST_F(XScreenSaverNoteTest, CountsWhileSomebodyHoldsTheKeyboard)
{
    saver.holdKeyboard();
    write(x.atom("LOCK"));
    EXPECT_TRUE(lock.isLocked());
    write(x.atom("BLANK"));
    EXPECT_TRUE(lock.isLocked());
    write(XCB_ATOM_NONE);
    EXPECT_FALSE(lock.isLocked());
}

TEST_F(XScreenSaverNoteTest, OfAKilledOneIsWorthNothing)
{
    write(x.atom("LOCK"));
    EXPECT_FALSE(lock.isLocked());
}

/// The lockers themselves.
class RealLockerTest : public X11SessionLockTest, public ::testing::WithParamInterface<std::vector<QString>> {
protected:
    ~RealLockerTest() override { end(); }

    [[nodiscard]] bool isInstalled() const { return !program().isEmpty(); }
    [[nodiscard]] static bool canMount()
    {
        return QProcess::execute(QStringLiteral("unshare"), ownMounts() << QStringLiteral("true")) == 0;
    }
    /// Some refuse to work for an account without a password: it gets one that only the locker sees. A copy
    /// of the program has no privileges that this machine may refuse to give.
    void start()
    {
        QFile shadow(folder.filePath(QStringLiteral("shadow")));
        ASSERT_TRUE(shadow.open(QIODevice::WriteOnly));
        shadow.write("root:$6$abcdefgh$NqvdVJ5y4AvIZbkHzaOTHXsZxqPSvCDl3hEXWW7p7Ky2VvXGFDqAs4BAiMfZzlLg3FPZ2"
                     "sbIWhs1s8jFfLcgL.:19000:0:99999:7:::\n");
        shadow.close();
        const QString copy = folder.filePath(GetParam().front());
        ASSERT_TRUE(QFile::copy(program(), copy));
        QStringList arguments = ownMounts();
        arguments << QStringLiteral("sh") << QStringLiteral("-c")
                  << QStringLiteral("mount --bind \"$0\" /etc/shadow && exec \"$@\"") << shadow.fileName()
                  << copy << QStringList(GetParam().begin() + 1, GetParam().end());
        process.start(QStringLiteral("unshare"), arguments);
        ASSERT_TRUE(process.waitForStarted());
    }
    void end()
    {
        process.kill();
        process.waitForFinished();
    }

    QTemporaryDir folder;
    QProcess process;

private:
    /// How `unshare` lets a program mount something for itself alone.
    [[nodiscard]] static QStringList ownMounts()
    {
        if (geteuid() == 0)
            return {QStringLiteral("--mount")};
        return {QStringLiteral("--mount"), QStringLiteral("--map-root-user")};
    }
    [[nodiscard]] QString program() const { return QStandardPaths::findExecutable(GetParam().front()); }
};

TEST_P(RealLockerTest, IsSeenWhileItLocksTheScreen)
{
    if (!isInstalled())
        GTEST_SKIP() << "not installed: " << GetParam().front().toStdString();
    if (!canMount())
        GTEST_SKIP() << "this account may not mount anything for one program";
    std::vector<bool> seen;
    const auto registration = lock.onChange([&] { seen.push_back(lock.isLocked()); });
    start();
    EXPECT_TRUE(waitUntil([this] { return lock.isLocked(); }))
        << process.readAllStandardError().toStdString();
    EXPECT_TRUE(waitUntil([&] { return seen == std::vector{true}; }));
    end();
    EXPECT_TRUE(waitUntil([this] { return !lock.isLocked(); }));
    EXPECT_TRUE(waitUntil([&] { return seen == std::vector{true, false}; }));
}

std::vector<QString> command(const char* text)
{
    std::vector<QString> words;
    for (const QString& word : QString::fromLatin1(text).split(u' '))
        words.push_back(word);
    return words;
}

INSTANTIATE_TEST_SUITE_P(Lockers, RealLockerTest,
                         ::testing::Values(command("i3lock -n"), command("xtrlock"), command("xtrlock -b"),
                                           command("slock"), command("xsecurelock")));

TEST_F(X11SessionLockTest, ALookTakesAtMostAMillisecondOrTwo)
{
    const auto median = [this] {
        std::vector<qint64> micros;
        QElapsedTimer clock;
        for (int i = 0; i < 101; ++i) {
            clock.start();
            (void)lock.isLocked();
            micros.push_back(clock.nsecsElapsed() / 1000);
        }
        std::ranges::sort(micros);
        return micros[50];
    };
    const qint64 usually = median();
    const auto locker = ScreenLocker::coveringTheScreen();
    const qint64 whenLocked = median();
    std::printf("median %lld us, locked %lld us\n", static_cast<long long>(usually),
                static_cast<long long>(whenLocked));
    EXPECT_LT(usually, 2000);
    EXPECT_LT(whenLocked, 4000);
}

} // namespace
} // namespace corvandi
