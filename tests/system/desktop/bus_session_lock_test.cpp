#include "system/desktop/bus_session_lock.h"

#include "lock_teller.h"
#include "support/event_loop.h"
#include "system/process/qt_main_queue.h"

#include <QElapsedTimer>
#include <QSemaphore>

#include <gtest/gtest.h>

#include <optional>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using testing::LockTeller;
using testing::runFor;
using testing::waitUntil;

class BusSessionLockTest : public ::testing::Test {
protected:
    /// Every service of these tests is on one bus.
    void open() { lock.emplace(queue, QDBusConnection::sessionBus(), &QDBusConnection::sessionBus); }
    [[nodiscard]] bool becomes(bool isLocked)
    {
        return waitUntil([&] { return lock->isLocked() == isLocked; });
    }

    QtMainQueue queue;
    std::optional<BusSessionLock> lock;
};

/// Each of those who are asked.
class EachTellerTest : public BusSessionLockTest, public ::testing::WithParamInterface<LockTeller::Manner> {};

TEST_P(EachTellerTest, IsBelievedFromTheStartAndWhenItChanges)
{
    LockTeller teller(GetParam(), true);
    open();
    EXPECT_FALSE(lock->isLocked()) << "it waits for nobody";
    EXPECT_TRUE(becomes(true));
    teller.set(false);
    EXPECT_TRUE(becomes(false));
    teller.set(true);
    EXPECT_TRUE(becomes(true));
}

TEST_P(EachTellerTest, MayComeLater)
{
    open();
    runFor(50ms);
    const LockTeller teller(GetParam(), true);
    EXPECT_TRUE(becomes(true));
}

TEST_P(EachTellerTest, TakesItsWordBackByEnding)
{
    std::optional<LockTeller> teller(std::in_place, GetParam(), true);
    open();
    ASSERT_TRUE(becomes(true));
    teller.reset();
    EXPECT_TRUE(becomes(false));
}

TEST_P(EachTellerTest, HoldsNobodyUpByHanging)
{
    LockTeller teller(GetParam(), true);
    teller.hang();
    QElapsedTimer time;
    time.start();
    open();
    EXPECT_TRUE(waitUntil([&] { return teller.questions() == 1; }));
    EXPECT_FALSE(lock->isLocked());
    lock.reset();
    EXPECT_LT(time.elapsed(), 2000) << "a question waits for five seconds";
}

TEST_P(EachTellerTest, IsStillBelievedWhenItHangsLater)
{
    LockTeller teller(GetParam(), true);
    open();
    ASSERT_TRUE(becomes(true));
    const int before = teller.questions();
    teller.hang();
    teller.set(true);
    ASSERT_TRUE(waitUntil([&] { return teller.questions() > before; }));
    EXPECT_TRUE(lock->isLocked());
}

INSTANTIATE_TEST_SUITE_P(
    All, EachTellerTest,
    ::testing::Values(LockTeller::sessionKeeper(),
                      LockTeller::screenSaver(QStringLiteral("org.freedesktop.ScreenSaver")),
                      LockTeller::screenSaver(QStringLiteral("org.gnome.ScreenSaver")),
                      LockTeller::screenSaver(QStringLiteral("org.cinnamon.ScreenSaver")),
                      LockTeller::screenSaver(QStringLiteral("org.mate.ScreenSaver")),
                      LockTeller::screenSaver(QStringLiteral("org.xfce.ScreenSaver"))));

TEST_F(BusSessionLockTest, IsLockedAsLongAsAnybodySaysSo)
{
    LockTeller saver(LockTeller::screenSaver(QStringLiteral("org.gnome.ScreenSaver")), true);
    LockTeller keeper(LockTeller::sessionKeeper(), true);
    open();
    ASSERT_TRUE(waitUntil([&] { return saver.questions() == 1 && keeper.questions() == 1; }));
    ASSERT_TRUE(becomes(true));
    int changes = 0;
    const auto registration = lock->onChange([&] { ++changes; });
    saver.set(false);
    ASSERT_TRUE(waitUntil([&] { return saver.questions() == 2; }));
    runFor(50ms);
    EXPECT_TRUE(lock->isLocked());
    EXPECT_EQ(changes, 0);
    keeper.set(false);
    EXPECT_TRUE(becomes(false));
    EXPECT_EQ(changes, 1);
}

TEST_F(BusSessionLockTest, WithoutABusItIsNotLocked)
{
    const auto nowhere = [] { return QDBusConnection(QStringLiteral("a connection that nobody has made")); };
    lock.emplace(queue, nowhere(), nowhere);
    runFor(50ms);
    EXPECT_FALSE(lock->isLocked());
}

TEST_F(BusSessionLockTest, ASystemBusThatHangsHoldsUpNeitherTheStartNorTheEnd)
{
    const auto release = std::make_shared<QSemaphore>();
    const LockTeller saver(LockTeller::screenSaver(QStringLiteral("org.gnome.ScreenSaver")), true);
    QElapsedTimer time;
    time.start();
    lock.emplace(queue, QDBusConnection::sessionBus(), [release] {
        release->acquire();
        return QDBusConnection::sessionBus();
    });
    EXPECT_TRUE(becomes(true)) << "the screen saver is on the other bus";
    lock.reset();
    EXPECT_LT(time.elapsed(), 3000);
    release->release();
}

} // namespace
} // namespace corvandi
