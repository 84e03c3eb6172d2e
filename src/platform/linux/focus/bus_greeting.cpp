#include "platform/linux/focus/bus_greeting.h"

#include <QMetaObject>

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

} // namespace corvandi
