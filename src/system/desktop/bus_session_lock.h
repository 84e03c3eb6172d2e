#pragma once

#include "base/main_queue.h"
#include "base/worker.h"
#include "ports/session_lock.h"
#include "system/bus/followed_value.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <list>
#include <memory>

namespace corvandi {

/// What the desktop's own lockers say on D-Bus: the session's LockedHint of logind (or elogind) on the system
/// bus, and `GetActive` of the screen savers on the session bus, under each of the names that desktops have
/// for them. Locked when any of them says so. logind's signal "Lock" is no more than a wish, and does not
/// count.
///
/// Nothing here waits, and nothing is started: questions go out when it is created, when a name gets another
/// owner and when a notice comes. One who hangs leaves what he said last, one who ends takes it back. The
/// connection to the system bus is opened by a thread that ends with it. Without a bus nobody says anything.
///
/// Thread: main thread only.
class BusSessionLock : public QObject, public SessionLock {
    Q_OBJECT

public:
    /// Runs on another thread.
    using OpenBus = std::function<QDBusConnection()>;

    /// `queue` outlives it.
    BusSessionLock(MainQueue& queue, QDBusConnection sessionBus,
                   OpenBus openSystemBus = &QDBusConnection::systemBus);

    [[nodiscard]] bool isLocked() const override { return isLocked_; }
    [[nodiscard]] std::unique_ptr<Registration> onChange(std::function<void()> callback) override;

Q_SIGNALS:
    void changed();

private:
    /// One who may know.
    struct Teller {
        bool saysLocked = false;
        std::unique_ptr<FollowedValue> value = nullptr;
    };
    using Reader = bool (*)(const QDBusMessage& answer);

    void follow(const QDBusConnection& bus, const FollowedValue::Source& source, Reader read);
    void say(Teller& teller, bool isLocked);

    bool isLocked_ = false;
    std::list<Teller> tellers_;
    Worker worker_;
    std::unique_ptr<Errand<QDBusConnection>> systemBus_;
};

} // namespace corvandi
