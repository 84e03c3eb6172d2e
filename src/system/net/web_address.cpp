#include "system/net/web_address.h"

#include <QHostAddress>

namespace corvandi {
namespace {

constexpr QLatin1String https("https");
constexpr QLatin1String http("http");
constexpr QLatin1String localhost("localhost");

} // namespace

bool isLoopbackHost(const QString& host)
{
    const QHostAddress address(host);
    // Other spellings, such as 127.1, mean something else to somebody.
    const bool isPlain = address.protocol() == QAbstractSocket::IPv4Protocol && address.toString() == host;
    return host == localhost || host == QLatin1String("::1") || (isPlain && address.isLoopback());
}

bool isSafeAddress(const QUrl& url)
{
    if (!url.isValid() || url.host().isEmpty() || !url.userInfo().isEmpty())
        return false;
    return url.scheme() == https || (url.scheme() == http && isLoopbackHost(url.host()));
}

bool mayLeadTo(const QUrl& from, const QUrl& to)
{
    return isSafeAddress(to) && (to.scheme() == https || from.scheme() != https);
}

QUrl connectionAddress(const QUrl& url)
{
    QUrl address = url;
    address.setFragment(QString());
    if (url.scheme() == http && url.host() == localhost)
        address.setHost(QStringLiteral("127.0.0.1"));
    return address;
}

} // namespace corvandi
