#pragma once

#include "ports/appearance.h"
#include "ports/system_log.h"
#include "system/bus/followed_value.h"

#include <QObject>

namespace corvandi {

/// The colour scheme that the desktop's settings portal tells (org.freedesktop.appearance,
/// color-scheme), followed by the portal's notices and those of its coming and going.
///
/// Nothing here waits: questions go out when it is created and when a notice comes. Until the first answer
/// and without a bus, a portal or a desktop that stands behind it there is no preference; a portal that
/// goes away leaves the last one. One that doesn't answer within five seconds is logged.
///
/// Thread: main thread only. The log outlives it.
class PortalAppearance : public QObject, public Appearance {
    Q_OBJECT

public:
    PortalAppearance(QDBusConnection bus, SystemLog& log);

    [[nodiscard]] ColorScheme colorScheme() const override { return scheme_; }
    [[nodiscard]] std::unique_ptr<Registration> onChange(std::function<void()> callback) override;

Q_SIGNALS:
    void changed();

private:
    void take(const QDBusPendingReply<QDBusVariant>& answer);

    SystemLog& log_;
    ColorScheme scheme_ = ColorScheme::noPreference;
    FollowedValue setting_;
};

} // namespace corvandi
