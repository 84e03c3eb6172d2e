#pragma once

#include "ports/appearance.h"
#include "ports/system_log.h"

#include <QDBusConnection>
#include <QObject>

class QDBusPendingCallWatcher;

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

private Q_SLOTS:
    void onSettingChanged(const QString& group, const QString& key);
    void onOwnerChanged(const QString& name, const QString& oldOwner, const QString& newOwner);

private:
    void ask();
    void take(QDBusPendingCallWatcher& question);

    QDBusConnection bus_;
    SystemLog& log_;
    ColorScheme scheme_ = ColorScheme::noPreference;
    /// The latest question; answers to older ones don't count. Owned by this object.
    QDBusPendingCallWatcher* question_ = nullptr;
};

} // namespace corvandi
