#include "system/accessibility/accessibility_bus.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QMetaObject>
#include <QThread>

#include <algorithm>
#include <optional>

namespace corvandi {
namespace {

/// The value of a key in an address like "unix:path=/run/bus,guid=0123".
std::optional<QString> valueIn(const QString& address, const QString& key)
{
    const QString list = address.section(QLatin1Char(':'), 1).section(QLatin1Char(';'), 0, 0);
    for (const QString& pair : list.split(QLatin1Char(','))) {
        if (pair.section(QLatin1Char('='), 0, 0) == key)
            return QString::fromUtf8(
                QByteArray::fromPercentEncoding(pair.section(QLatin1Char('='), 1).toUtf8()));
    }
    return std::nullopt;
}

/// A zero byte begins each conversation; this question about the ways to log in is answered to anybody.
QByteArray greeting()
{
    return QByteArrayLiteral("\0AUTH\r\n");
}

} // namespace

BusGreeting::BusGreeting(QString address)
    : address_(std::move(address))
{
    connect(&socket_, &QLocalSocket::connected, this, [this] { socket_.write(greeting()); });
    connect(&socket_, &QLocalSocket::readyRead, this, [this] {
        socket_.disconnect(this);
        Q_EMIT answered(address_);
    });
    connect(&socket_, &QLocalSocket::errorOccurred, this, [this] {
        socket_.disconnect(this);
        Q_EMIT failed(socket_.errorString());
    });
    QMetaObject::invokeMethod(this, &BusGreeting::knock, Qt::QueuedConnection);
}

void BusGreeting::knock()
{
    if (const auto path = valueIn(address_, QStringLiteral("path"))) {
        socket_.connectToServer(*path);
    } else if (const auto name = valueIn(address_, QStringLiteral("abstract"))) {
        socket_.setSocketOptions(QLocalSocket::AbstractNamespaceOption);
        socket_.connectToServer(*name);
    } else {
        // Another kind of socket, at which only connecting can tell.
        Q_EMIT answered(address_);
    }
}

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
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, &AccessibilityBusFinder::search);
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

void AccessibilityBusFinder::search()
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

namespace {

using std::chrono::milliseconds;

/// Calls that travel together. More would fill the queue of an application that is slow, with work that
/// nobody waits for any more.
constexpr size_t callsPerRound = 64;

QDBusError noReply()
{
    return {QDBusError::NoReply, QStringLiteral("not asked")};
}

} // namespace

bool isUnanswered(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ErrorMessage)
        return false;
    const QDBusError error(reply);
    return error.type() == QDBusError::NoReply || error.type() == QDBusError::Timeout ||
           error.type() == QDBusError::TimedOut;
}

BusReader::BusReader(const QDBusConnection& bus, std::function<void(const QString&)> fellSilent)
    : bus_(bus)
    , fellSilent_(std::move(fellSilent))
{
}

std::vector<QDBusMessage> BusReader::ask(std::span<const QDBusMessage> calls, const QDeadlineTimer& deadline)
{
    std::vector<QDBusMessage> replies;
    replies.reserve(calls.size());
    while (!calls.empty()) {
        const size_t count = std::min(calls.size(), callsPerRound);
        askTogether(calls.first(count), deadline, replies);
        calls = calls.subspan(count);
    }
    return replies;
}

void BusReader::askTogether(std::span<const QDBusMessage> calls, const QDeadlineTimer& deadline,
                            std::vector<QDBusMessage>& replies)
{
    const milliseconds limit =
        std::min(answerLimit, std::chrono::duration_cast<milliseconds>(deadline.remainingTimeAsDuration()));
    const bool late = limit <= milliseconds(0) || QThread::currentThread()->isInterruptionRequested();
    std::vector<QDBusPendingCall> pending;
    pending.reserve(calls.size());
    for (const QDBusMessage& call : calls) {
        pending.push_back(late || isSilent(call.service())
                              ? QDBusPendingCall::fromError(noReply())
                              : bus_.asyncCall(call, static_cast<int>(limit.count())));
    }
    QSet<QString> asked;
    QSet<QString> answered;
    for (size_t i = 0; i < pending.size(); ++i) {
        pending[i].waitForFinished();
        replies.push_back(pending[i].reply());
        asked.insert(calls[i].service());
        if (!isUnanswered(replies.back()))
            answered.insert(calls[i].service());
    }
    // Less than the full time says nothing about the application.
    if (limit == answerLimit && !late)
        noteSilence(asked, answered);
}

void BusReader::noteSilence(const QSet<QString>& asked, const QSet<QString>& answered)
{
    for (const QString& bus : asked) {
        if (answered.contains(bus) || isSilent(bus))
            continue;
        silentUntil_.insert(bus, QDeadlineTimer(silenceLength));
        fellSilent_(bus);
    }
}

bool BusReader::isSilent(const QString& bus) const
{
    const auto until = silentUntil_.find(bus);
    return until != silentUntil_.end() && !until->hasExpired();
}

void BusReader::endSilence(const QString& bus)
{
    silentUntil_.remove(bus);
}

} // namespace corvandi
