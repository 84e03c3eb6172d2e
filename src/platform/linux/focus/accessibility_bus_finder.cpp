#include "platform/linux/focus/accessibility_bus_finder.h"

#include <QDBusMessage>
#include <QDBusPendingReply>

namespace corvandi {
namespace {

QString serviceName()
{
    return QStringLiteral("org.a11y.Bus");
}

} // namespace

AccessibilityBusFinder::AccessibilityBusFinder()
    : sessionName_(QStringLiteral("focus-session-%1").arg(reinterpret_cast<quintptr>(this)))
    , session_(sessionName_)
{
    watcher_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    watcher_.addWatchedService(serviceName());
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, &AccessibilityBusFinder::look);
}

AccessibilityBusFinder::~AccessibilityBusFinder()
{
    QDBusConnection::disconnectFromBus(sessionName_);
}

void AccessibilityBusFinder::connectToSession()
{
    QDBusConnection::disconnectFromBus(sessionName_);
    session_ = QDBusConnection::connectToBus(QDBusConnection::SessionBus, sessionName_);
    watcher_.setConnection(session_);
    session_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                     QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                     SLOT(sessionLost()));
}

void AccessibilityBusFinder::sessionLost()
{
    asking_.reset();
    Q_EMIT failed(QStringLiteral("the session bus has gone"));
}

void AccessibilityBusFinder::look()
{
    if (asking_)
        return;
    if (!session_.isConnected())
        connectToSession();
    if (!session_.isConnected()) {
        Q_EMIT failed(QStringLiteral("no session bus"));
        return;
    }
    const QDBusMessage call = QDBusMessage::createMethodCall(serviceName(), QStringLiteral("/org/a11y/bus"),
                                                             serviceName(), QStringLiteral("GetAddress"));
    asking_ = std::make_unique<QDBusPendingCallWatcher>(session_.asyncCall(call));
    connect(asking_.get(), &QDBusPendingCallWatcher::finished, this, &AccessibilityBusFinder::finish);
}

void AccessibilityBusFinder::finish()
{
    const QDBusPendingReply<QString> reply = *asking_;
    asking_.release()->deleteLater();
    if (reply.isError())
        Q_EMIT failed(reply.error().message());
    else
        Q_EMIT found(reply.value());
}

} // namespace corvandi
