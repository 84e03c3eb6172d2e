#include "platform/linux/language_model/server_address.h"

#include "base/loopback_host.h"

namespace corvandi {
namespace {

bool isServerAddress(const QUrl& url)
{
    return url.isValid() && url.scheme() == QLatin1String("http") && url.userInfo().isEmpty() &&
           !url.hasQuery() && !url.hasFragment() && isLoopbackHost(url.host());
}

/// The path without the parts that people copy along from instructions.
QString prefixOf(QString path)
{
    const auto dropSlashes = [&path] {
        while (path.endsWith(u'/'))
            path.chop(1);
    };
    dropSlashes();
    if (path.endsWith(QLatin1String("/v1")))
        path.chop(3);
    dropSlashes();
    return path;
}

QUrl withHost(QUrl url, const QString& host)
{
    url.setHost(host);
    return url;
}

} // namespace

std::vector<QUrl> serverAddresses(const QString& text)
{
    const QString trimmed = text.trimmed();
    const bool hasScheme = trimmed.contains(QLatin1String("://"));
    QUrl url(hasScheme ? trimmed : QStringLiteral("http://") + trimmed, QUrl::StrictMode);
    if (!isServerAddress(url))
        return {};
    url.setPath(prefixOf(url.path()));
    if (url.host() != QLatin1String("localhost"))
        return {url};
    return {withHost(url, QStringLiteral("127.0.0.1")), withHost(url, QStringLiteral("::1"))};
}

QUrl serverAddress(quint16 port)
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(port));
}

QUrl protocolAddress(const QUrl& server, const QString& resource)
{
    QUrl address = server;
    address.setPath(server.path() + QLatin1String("/v1/") + resource);
    return address;
}

} // namespace corvandi
