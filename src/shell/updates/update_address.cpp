#include "shell/updates/update_address.h"

#include "base/loopback_host.h"

namespace corvandi {
namespace {

constexpr QLatin1String https("https");
constexpr QLatin1String http("http");
constexpr QLatin1String localhost("localhost");

} // namespace

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
