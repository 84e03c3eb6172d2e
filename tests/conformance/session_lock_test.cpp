#include "conformance/event_loop_time.h"
#include "conformance/session_lock_suite.h"
#include "session/x11/windows/screen_locker.h"
#include "session/x11/windows/x11_session_lock.h"
#include "support/fake_session_lock.h"
#include "system/desktop/bus_session_lock.h"
#include "system/desktop/lock_teller.h"
#include "system/process/qt_main_queue.h"

#include <optional>

namespace corvandi::testing {
namespace {

class BusSessionLockDriver : public OnEventLoop<SessionLockDriver> {
public:
    [[nodiscard]] SessionLock& sessionLock() override { return sessionLock_; }
    void lock() override { saver_.set(true); }
    void unlock() override { saver_.set(false); }

private:
    QtMainQueue queue_;
    LockTeller saver_{LockTeller::screenSaver(QStringLiteral("org.gnome.ScreenSaver"))};
    BusSessionLock sessionLock_{queue_, QDBusConnection::sessionBus(), &QDBusConnection::sessionBus};
};

class X11SessionLockDriver : public OnEventLoop<SessionLockDriver> {
public:
    [[nodiscard]] SessionLock& sessionLock() override { return sessionLock_; }
    void lock() override { locker_.emplace(ScreenLocker::coveringTheScreen()); }
    void unlock() override { locker_.reset(); }

private:
    QtMainQueue queue_;
    FakeSessionLock told_;
    X11SessionLock sessionLock_{queue_, told_};
    std::optional<ScreenLocker> locker_;
};

INSTANTIATE_TEST_SUITE_P(Bus, SessionLockSuite, over<BusSessionLockDriver>("Bus"));
INSTANTIATE_TEST_SUITE_P(X11, SessionLockSuite, over<X11SessionLockDriver>("X11"));

} // namespace
} // namespace corvandi::testing
