#include "platform/linux/audio/microphone_permission.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QMap>
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

} // namespace corvandi
