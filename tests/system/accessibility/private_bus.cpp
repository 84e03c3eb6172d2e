#include "private_bus.h"

#include <QFile>
#include <QProcessEnvironment>
#include <QUuid>

#include <stdexcept>

namespace corvandi::testing {
namespace {

const char* const configuration = R"(<busconfig><type>session</type><listen>%1</listen><auth>EXTERNAL</auth>
<policy context="default"><allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy>
</busconfig>)";

/// The program behind the name org.a11y.Bus, wherever the distribution keeps it.
QString accessibilityLauncher()
{
    QFile service(QStringLiteral("/usr/share/dbus-1/services/org.a11y.Bus.service"));
    if (!service.open(QIODevice::ReadOnly))
        throw std::runtime_error("no accessibility service is installed");
    for (const QByteArray& line : service.readAll().split('\n')) {
        if (line.startsWith("Exec="))
            return QString::fromUtf8(line.mid(5));
    }
    throw std::runtime_error("the accessibility service names no program");
}

void finish(QProcess& process)
{
    process.kill();
    process.waitForFinished();
}

} // namespace

PrivateBus::PrivateBus()
    : connectionName_(QUuid::createUuid().toString())
{
    QFile file(folder_.filePath(QStringLiteral("bus.conf")));
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("can't write the bus configuration");
    file.write(QString::fromLatin1(configuration).arg(address()).toUtf8());
    file.close();
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                   QStringLiteral("--config-file=") + file.fileName()});
    if (!daemon_.waitForReadyRead())
        throw std::runtime_error("the bus does not start");
    QDBusConnection::connectToBus(address(), connectionName_);
}

PrivateBus::~PrivateBus()
{
    finish(launcher_);
    QDBusConnection::disconnectFromBus(connectionName_);
    finish(daemon_);
}

QString PrivateBus::address() const
{
    return QStringLiteral("unix:path=") + folder_.filePath(QStringLiteral("bus"));
}

void PrivateBus::startAccessibility()
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address());
    launcher_.setProcessEnvironment(environment);
    launcher_.start(accessibilityLauncher(), QStringList{});
    launcher_.waitForStarted();
}

void PrivateBus::endAccessibility()
{
    finish(launcher_);
}

void PrivateBus::end()
{
    finish(daemon_);
}

} // namespace corvandi::testing
