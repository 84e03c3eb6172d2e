#include "portal_desktop.h"

#include "support/event_loop.h"

#include <QDBusConnectionInterface>
#include <QDBusVariant>
#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>

#include <csignal>
#include <stdexcept>

namespace corvandi::testing {
namespace {

const QString connectionName = QStringLiteral("settings-backend");
const QString objectPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interfaceName = QStringLiteral("org.freedesktop.impl.portal.Settings");
const QString group = QStringLiteral("org.freedesktop.appearance");
const QString key = QStringLiteral("color-scheme");
const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString program = QStringLiteral("/usr/libexec/xdg-desktop-portal");

const char* const description = R"([portal]
DBusName=%1
Interfaces=org.freedesktop.impl.portal.Settings;
UseIn=test
)";

QDBusConnection connectAgain()
{
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName);
}

bool hasPortal()
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(portalName);
}

} // namespace

SettingsBackend::SettingsBackend(uint colorScheme)
    : bus_(connectAgain())
    , colorScheme_(colorScheme)
{
    bus_.registerVirtualObject(objectPath, this);
    if (!bus_.registerService(serviceName()))
        throw std::runtime_error("the name of the settings backend is taken");
}

SettingsBackend::~SettingsBackend()
{
    bus_.unregisterService(serviceName());
    QDBusConnection::disconnectFromBus(connectionName);
}

void SettingsBackend::set(uint colorScheme)
{
    colorScheme_ = colorScheme;
    auto notice = QDBusMessage::createSignal(objectPath, interfaceName, QStringLiteral("SettingChanged"));
    notice.setArguments({group, key, QVariant::fromValue(QDBusVariant(colorScheme_))});
    bus_.send(notice);
}

QString SettingsBackend::introspect(const QString&) const
{
    return {};
}

bool SettingsBackend::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    if (message.member() == QLatin1String("Read") && message.arguments() == QVariantList{group, key})
        return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(colorScheme_))));
    if (message.member() == QLatin1String("GetAll"))
        return connection.send(message.createReply(QVariantMap{{QStringLiteral("version"), 1U}}));
    return false;
}

Portal::Portal()
{
    QFile file(folder_.filePath(QStringLiteral("test.portal")));
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("can't describe the settings backend");
    file.write(QString::fromLatin1(description).arg(SettingsBackend::serviceName()).toUtf8());
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_DESKTOP_PORTAL_DIR"), folder_.path());
    environment.insert(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("test"));
    process_.setProcessEnvironment(environment);
    process_.setProgram(program);
    process_.setArguments({QStringLiteral("--replace")});
}

Portal::~Portal()
{
    end();
}

bool Portal::isInstalled()
{
    return QFileInfo(program).isExecutable();
}

void Portal::start()
{
    process_.start();
    if (!process_.waitForStarted() || !waitUntil(hasPortal))
        throw std::runtime_error("the portal does not start");
}

void Portal::end()
{
    process_.kill();
    process_.waitForFinished();
    (void)waitUntil([] { return !hasPortal(); });
}

void Portal::freeze()
{
    kill(static_cast<pid_t>(process_.processId()), SIGSTOP);
}

void Portal::thaw()
{
    kill(static_cast<pid_t>(process_.processId()), SIGCONT);
}

} // namespace corvandi::testing
