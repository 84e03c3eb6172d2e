#include "system/audio/pulse_capture_authorization.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFile>
#include <QMap>
#include <QSettings>
#include <QStringList>

namespace corvandi {
namespace {

/// For each application "yes", "no" or "ask".
using Permissions = QMap<QString, QStringList>;

} // namespace

QDBusPendingCall askForMicrophonePermissions()
{
    qDBusRegisterMetaType<Permissions>();
    QDBusMessage lookup = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.impl.portal.PermissionStore"),
        QStringLiteral("/org/freedesktop/impl/portal/PermissionStore"),
        QStringLiteral("org.freedesktop.impl.portal.PermissionStore"), QStringLiteral("Lookup"));
    lookup << QStringLiteral("devices") << QStringLiteral("microphone");
    return QDBusConnection::sessionBus().asyncCall(lookup);
}

AuthorizationStatus microphonePermission(const QDBusPendingCall& answer, const QString& applicationId)
{
    const QDBusPendingReply<Permissions, QDBusVariant> reply = answer;
    if (!reply.isValid())
        return AuthorizationStatus::notDetermined;
    const QStringList permissions = reply.argumentAt<0>().value(applicationId);
    if (permissions.contains(QStringLiteral("yes")))
        return AuthorizationStatus::authorized;
    if (permissions.contains(QStringLiteral("no")))
        return AuthorizationStatus::denied;
    return AuthorizationStatus::notDetermined;
}

std::optional<QString> sandboxedApplicationId()
{
    const QString flatpak = QStringLiteral("/.flatpak-info");
    if (QFile::exists(flatpak))
        return QSettings(flatpak, QSettings::IniFormat).value(QStringLiteral("Application/name")).toString();
    const QString snap = qEnvironmentVariable("SNAP_INSTANCE_NAME", qEnvironmentVariable("SNAP_NAME"));
    if (!qEnvironmentVariable("SNAP").isEmpty() && !snap.isEmpty())
        return QStringLiteral("snap.") + snap;
    return std::nullopt;
}

PulseCaptureAuthorization::PulseCaptureAuthorization(PulseServer& server, MainQueue& queue,
                                                     std::optional<QString> sandboxedId)
    : server_(server)
    , mailbox_(queue)
    , sandboxedId_(std::move(sandboxedId))
{
    refresh();
}

PulseCaptureAuthorization::~PulseCaptureAuthorization() = default;

AuthorizationStatus PulseCaptureAuthorization::status()
{
    refresh();
    return knownStatus();
}

void PulseCaptureAuthorization::requestAccess(std::function<void(bool granted)> answered)
{
    waiting_.push_back(std::move(answered));
    refresh();
    if (!lookup_)
        mailbox_.address().post([this] { refreshed(); });
}

void PulseCaptureAuthorization::refresh()
{
    if (!sandboxedId_ || lookup_)
        return;
    lookup_ = std::make_unique<QDBusPendingCallWatcher>(askForMicrophonePermissions());
    QObject::connect(lookup_.get(), &QDBusPendingCallWatcher::finished, lookup_.get(), [this] {
        stored_ = microphonePermission(*lookup_, *sandboxedId_);
        lookup_.release()->deleteLater();
        refreshed();
    });
}

void PulseCaptureAuthorization::refreshed()
{
    const bool isGranted = knownStatus() != AuthorizationStatus::denied;
    const auto waiting = std::exchange(waiting_, {});
    for (const auto& answered : waiting)
        answered(isGranted);
}

AuthorizationStatus PulseCaptureAuthorization::knownStatus() const
{
    if (server_.refusesAccess())
        return AuthorizationStatus::denied;
    return sandboxedId_ ? stored_ : AuthorizationStatus::authorized;
}

} // namespace corvandi
