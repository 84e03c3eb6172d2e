#pragma once

#include "ports/system_log.h"
#include "system/bus/followed_value.h"

#include <QDBusConnection>
#include <QObject>

namespace corvandi {

/// Whether the desktop's accessibility service is switched on (org.a11y.Status on the session bus),
/// followed by its change notices and those of its owner.
///
/// Nothing here waits: questions go out when it is created and when a notice comes, and until an answer
/// has arrived the state is unknown. A service that is missing, hung or has died leaves it unknown, is
/// logged once, and is asked again by `refresh`; one that appears later is noticed at once. Without a
/// session bus the state stays unknown.
///
/// Thread: main thread only.
class AccessibilityStatus : public QObject {
    Q_OBJECT

public:
    enum class State { unknown, disabled, enabled };

    AccessibilityStatus(QDBusConnection bus, SystemLog& log);

    [[nodiscard]] State state() const;
    /// A question is under way; `answered` will follow.
    [[nodiscard]] bool isAsking() const { return isEnabled_.isAsking(); }
    [[nodiscard]] bool hasBus() const { return bus_.isConnected(); }
    /// Asks again when the state is unknown and no question is under way.
    void refresh();
    /// Switches the service on, for this session. A refusal is logged.
    void enable();

Q_SIGNALS:
    /// A question has been answered, or has failed.
    void answered();

private:
    void take(const QDBusPendingReply<QDBusVariant>& answer);
    void logOnce(const QString& problem);

    QDBusConnection bus_;
    SystemLog& log_;
    State state_ = State::unknown;
    QString lastProblem_;
    FollowedValue isEnabled_;
};

} // namespace corvandi
