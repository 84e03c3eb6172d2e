#include "harness/bus_connection.h"

#include "harness/waiting.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QUuid>

namespace corvandi::harness {
namespace {

const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");

QString sessionAddress()
{
    return qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
}

} // namespace

std::shared_ptr<BusConnection> BusConnection::toSession()
{
    return std::make_shared<BusConnection>(sessionAddress());
}

std::shared_ptr<BusConnection> BusConnection::toAccessibility()
{
    const Target service{QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                         QStringLiteral("org.a11y.Bus")};
    const QVariantList answer = toSession()->call(service, QStringLiteral("GetAddress"));
    return std::make_shared<BusConnection>(answer.value(0).toString());
}

// Under a name that nobody else has: the toolkit would hand out the bus of an earlier desktop again.
BusConnection::BusConnection(const QString& address)
    : name_(QUuid::createUuid().toString())
    , connection_(QDBusConnection::connectToBus(address, name_))
{
    if (!connection_.isConnected())
        throw HarnessError("no bus at " + address.toStdString() + ": " +
                           connection_.lastError().message().toStdString());
}

BusConnection::~BusConnection()
{
    QDBusConnection::disconnectFromBus(name_);
}

QVariantList BusConnection::call(const Target& target, const QString& method,
                                 const QVariantList& arguments) const
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(target.service, target.path, target.interface, method);
    message.setArguments(arguments);
    constexpr std::chrono::milliseconds limit = patience;
    const QDBusMessage reply = connection_.call(message, QDBus::Block, static_cast<int>(limit.count()));
    if (reply.type() != QDBusMessage::ReplyMessage)
        throw HarnessError(method.toStdString() + " of " + target.path.toStdString() +
                           " failed: " + reply.errorMessage().toStdString());
    return reply.arguments();
}

QVariant BusConnection::property(const Target& target, const QString& name) const
{
    return call({target.service, target.path, properties}, QStringLiteral("Get"), {target.interface, name})
        .value(0)
        .value<QDBusVariant>()
        .variant();
}

void BusConnection::setProperty(const Target& target, const QString& name, const QVariant& value) const
{
    call({target.service, target.path, properties}, QStringLiteral("Set"),
         {target.interface, name, QVariant::fromValue(QDBusVariant(value))});
}

pid_t BusConnection::processOf(const QString& service) const
{
    const Target bus{QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                     QStringLiteral("org.freedesktop.DBus")};
    if (!call(bus, QStringLiteral("NameHasOwner"), {service}).value(0).toBool())
        return 0;
    try {
        return static_cast<pid_t>(
            call(bus, QStringLiteral("GetConnectionUnixProcessID"), {service}).value(0).toUInt());
    } catch (const HarnessError&) {
        return 0; // It has gone since.
    }
}

} // namespace corvandi::harness
