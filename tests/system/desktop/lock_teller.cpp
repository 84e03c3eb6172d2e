#include "lock_teller.h"

#include <QDBusVariant>
#include <QUuid>

#include <stdexcept>

namespace corvandi::testing {
namespace {

const QString sessionInterface = QStringLiteral("org.freedesktop.login1.Session");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const QString hint = QStringLiteral("LockedHint");

} // namespace

LockTeller::Manner LockTeller::screenSaver(const QString& name)
{
    const QString path = u'/' + QString(name).replace(u'.', u'/');
    return {name, path, path, name};
}

LockTeller::Manner LockTeller::sessionKeeper()
{
    return {QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1/session/auto"),
            QStringLiteral("/org/freedesktop/login1/session/_32"), sessionInterface};
}

LockTeller::LockTeller(Manner manner, bool isLocked)
    : manner_(std::move(manner))
    , connectionName_(QUuid::createUuid().toString())
    , bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName_))
    , isLocked_(isLocked)
{
    bus_.registerVirtualObject(manner_.path, this);
    if (!bus_.registerService(manner_.service))
        throw std::runtime_error("the name " + manner_.service.toStdString() + " is taken");
}

LockTeller::~LockTeller()
{
    bus_.unregisterService(manner_.service);
    QDBusConnection::disconnectFromBus(connectionName_);
}

void LockTeller::set(bool isLocked)
{
    isLocked_ = isLocked;
    if (manner_.interface == sessionInterface) {
        auto notice = QDBusMessage::createSignal(manner_.noticePath, propertiesInterface,
                                                 QStringLiteral("PropertiesChanged"));
        notice.setArguments({sessionInterface, QVariantMap{{hint, isLocked_}}, QStringList()});
        bus_.send(notice);
    } else {
        auto notice = QDBusMessage::createSignal(manner_.noticePath, manner_.interface,
                                                 QStringLiteral("ActiveChanged"));
        notice.setArguments({isLocked_});
        bus_.send(notice);
    }
}

QString LockTeller::introspect(const QString&) const
{
    return {};
}

bool LockTeller::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    ++questions_;
    if (hangs_)
        return true;
    if (message.interface() == propertiesInterface &&
        message.arguments() == QVariantList{sessionInterface, hint})
        return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(isLocked_))));
    if (message.interface() == manner_.interface && message.member() == QLatin1String("GetActive"))
        return connection.send(message.createReply(isLocked_));
    return false;
}

} // namespace corvandi::testing
