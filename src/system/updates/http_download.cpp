#include "system/updates/http_download.h"

#include "base/loopback_host.h"
#include "shell/updates/update_address.h"
#include "system/net/plain_request.h"

#include <QNetworkProxyFactory>

#include <array>

namespace corvandi {
namespace {

using Kind = UpdateFailure::Kind;

Kind kindOf(const QNetworkReply& reply)
{
    switch (reply.error()) {
    case QNetworkReply::SslHandshakeFailedError:
    case QNetworkReply::InsecureRedirectError:
        return Kind::insecure;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return Kind::timedOut;
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolInvalidOperationError:
        return Kind::refused;
    case QNetworkReply::RemoteHostClosedError:
        // Once there was a status the answer had begun.
        return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid() ? Kind::incomplete
                                                                                   : Kind::unreachable;
    default:
        return Kind::unreachable;
    }
}

} // namespace

UpdateFailure failureOf(const QNetworkReply& reply)
{
    return {kindOf(reply), reply.errorString()};
}

namespace {

using Kind = UpdateFailure::Kind;

constexpr int maximumRedirections = 5;
/// What the network may hold for us in memory.
constexpr qint64 bufferSize = 256 * 1024;
constexpr int statusOk = 200;

/// This machine is reached directly, whatever the environment says about proxies.
class Proxies : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override
    {
        if (isLoopbackHost(query.peerHostName()))
            return {QNetworkProxy(QNetworkProxy::NoProxy)};
        return systemProxyForQuery(query);
    }
};

bool isRedirection(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

/// Qt complains about an abort inside a reply's own signal, so that comes afterwards.
void closeLater(QNetworkReply* reply)
{
    reply->disconnect();
    QMetaObject::invokeMethod(
        reply,
        [reply] {
            reply->abort();
            reply->deleteLater();
        },
        Qt::QueuedConnection);
}

} // namespace

HttpDownload::HttpDownload(const QUrl& url, const HttpPatience& patience, Sink sink, Finished finished)
    : reply_(nullptr, closeLater)
    , sink_(std::move(sink))
    , finished_(std::move(finished))
{
    network_.setProxyFactory(std::make_unique<Proxies>().release());
    idleTimer_.setSingleShot(true);
    idleTimer_.setInterval(patience.idle);
    totalTimer_.setSingleShot(true);
    connect(&idleTimer_, &QTimer::timeout, this, [this] {
        end(UpdateFailure{Kind::timedOut, QStringLiteral("nothing came any more")});
    });
    connect(&totalTimer_, &QTimer::timeout, this, [this] {
        end(UpdateFailure{Kind::timedOut, QStringLiteral("the transfer is too slow")});
    });
    totalTimer_.start(patience.total);
    request(url);
}

HttpDownload::~HttpDownload()
{
    if (!reply_)
        return;
    reply_->disconnect();
    reply_->abort();
}

void HttpDownload::request(const QUrl& url)
{
    if (!isUpdateAddress(url)) {
        end(UpdateFailure{Kind::insecure,
                          QStringLiteral("not an address for updates: ") + url.toDisplayString()});
        return;
    }
    idleTimer_.start();
    reply_.reset(network_.get(plainRequest(connectionAddress(url))));
    limitReadBuffer(*reply_, bufferSize);
    connect(reply_.get(), &QNetworkReply::metaDataChanged, this, &HttpDownload::headersArrived);
    connect(reply_.get(), &QNetworkReply::readyRead, this, &HttpDownload::bytesArrived);
    connect(reply_.get(), &QNetworkReply::finished, this, &HttpDownload::replyFinished);
}

void HttpDownload::headersArrived()
{
    idleTimer_.start();
    const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status == statusOk)
        return;
    if (isRedirection(status))
        follow(reply_->rawHeader("Location"));
    else
        end(UpdateFailure{Kind::refused, QStringLiteral("HTTP %1").arg(status)});
}

void HttpDownload::follow(const QByteArray& location)
{
    const QUrl from = reply_->url();
    const QUrl to = from.resolved(QUrl::fromEncoded(location, QUrl::StrictMode));
    if (location.isEmpty() || ++redirections_ > maximumRedirections) {
        end(UpdateFailure{Kind::refused, QStringLiteral("too many redirections, or one to nowhere")});
    } else if (!mayLeadTo(from, to)) {
        end(UpdateFailure{Kind::insecure, QStringLiteral("redirected to ") + to.toDisplayString()});
    } else {
        reply_.reset();
        // Not from inside a signal of the reply that goes.
        QMetaObject::invokeMethod(
            this, [this, to] { request(to); }, Qt::QueuedConnection);
    }
}

void HttpDownload::bytesArrived()
{
    idleTimer_.start();
    std::array<char, 64 * 1024> piece;
    while (!hasEnded_ && reply_ && reply_->bytesAvailable() > 0) {
        const qint64 count = reply_->read(piece.data(), piece.size());
        if (count <= 0)
            return;
        if (auto failure = sink_({piece.data(), static_cast<size_t>(count)}))
            end(std::move(failure));
    }
}

void HttpDownload::replyFinished()
{
    if (reply_->error() != QNetworkReply::NoError) {
        end(failureOf(*reply_));
        return;
    }
    bytesArrived();
    if (hasEnded_)
        return;
    end(std::nullopt);
}

void HttpDownload::end(std::optional<UpdateFailure> failure)
{
    if (hasEnded_)
        return;
    hasEnded_ = true;
    idleTimer_.stop();
    totalTimer_.stop();
    reply_.reset();
    // Whoever is told may destroy this download, which must not happen inside a signal of the network's.
    QMetaObject::invokeMethod(
        this, [finished = finished_, told = std::move(failure)] { finished(told); }, Qt::QueuedConnection);
}

} // namespace corvandi
