#include "updates/update_address.h"

#include <QStringList>

#include <algorithm>

namespace corvandi {
namespace {

constexpr QLatin1String https("https");
constexpr QLatin1String http("http");
constexpr QLatin1String localhost("localhost");

bool isOctet(const QString& text)
{
    const auto isDigit = [](QChar character) { return character >= u'0' && character <= u'9'; };
    return !text.isEmpty() && text.size() <= 3 && std::all_of(text.begin(), text.end(), isDigit) &&
           text.toUInt() <= 255;
}

bool isLoopbackAddress(const QString& host)
{
    const QStringList octets = host.split(u'.');
    return octets.size() == 4 && octets.front() == QLatin1String("127") &&
           std::all_of(octets.begin(), octets.end(), isOctet);
}

} // namespace

bool isLoopbackHost(const QString& host)
{
    return host == localhost || host == QLatin1String("::1") || isLoopbackAddress(host);
}

bool isUpdateAddress(const QUrl& url)
{
    if (!url.isValid() || url.host().isEmpty() || !url.userInfo().isEmpty())
        return false;
    return url.scheme() == https || (url.scheme() == http && isLoopbackHost(url.host()));
}

bool mayLeadTo(const QUrl& from, const QUrl& to)
{
    return isUpdateAddress(to) && (to.scheme() == https || from.scheme() != https);
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
