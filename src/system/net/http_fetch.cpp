#include "system/net/http_fetch.h"

#include "system/net/stoppable_loop.h"
#include "system/net/web_address.h"

#include <QNetworkProxyFactory>
#include <QNetworkRequest>

#include <algorithm>
#include <utility>

namespace corvandi {
namespace {

/// What the network may hold for us in memory.
constexpr qint64 bufferSize = 256 * 1024;
constexpr int statusOk = 200;

/// Bytes that can be read once. Qt posts a second time when a server closes the connection without an
/// answer, unless it can't have the bytes again; and a text must not reach a server twice.
class OnceReadable : public QIODevice {
public:
    explicit OnceReadable(QByteArray bytes)
        : bytes_(std::move(bytes))
    {
        open(ReadOnly | Unbuffered);
    }
    [[nodiscard]] bool isSequential() const override { return true; }
    [[nodiscard]] bool seek(qint64) override { return false; }
    [[nodiscard]] qint64 bytesAvailable() const override { return bytes_.size() - position_; }
    [[nodiscard]] bool atEnd() const override { return bytesAvailable() == 0; }

protected:
    qint64 readData(char* data, qint64 room) override
    {
        if (atEnd())
            return -1;
        const qint64 count = std::min(room, bytesAvailable());
        std::copy_n(bytes_.constData() + position_, count, data);
        position_ += count;
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray bytes_;
    qint64 position_ = 0;
};

class Proxies : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override
    {
        if (isLoopbackHost(query.peerHostName()))
            return {QNetworkProxy(QNetworkProxy::NoProxy)};
        return systemProxyForQuery(query);
    }
};

QNetworkRequest plainRequest(const QUrl& url)
{
    QNetworkRequest request(url);
    request.setRawHeader("User-Agent", "Corvandi");
    // Qt would tell the person's language otherwise, and unpack what is compressed.
    request.setRawHeader("Accept-Language", "*");
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

/// Bounds what the network holds of an answer until it is read.
void limitReadBuffer(QNetworkReply& reply)
{
    // Qt forgets the size when it is set before the request is under way, which it is in the next turn.
    QMetaObject::invokeMethod(
        &reply, [&reply] { reply.setReadBufferSize(bufferSize); }, Qt::QueuedConnection);
}

int statusOf(const QNetworkReply& reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

bool isRedirection(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

HttpEnd::Kind failureOf(const QNetworkReply& reply)
{
    switch (reply.error()) {
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::HostNotFoundError:
        return HttpEnd::Kind::unreachable;
    case QNetworkReply::SslHandshakeFailedError:
    case QNetworkReply::InsecureRedirectError:
        return HttpEnd::Kind::insecure;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return HttpEnd::Kind::timedOut;
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolInvalidOperationError:
        return HttpEnd::Kind::notUnderstood;
    default:
        return HttpEnd::Kind::brokenOff;
    }
}

} // namespace

HttpFetch::HttpFetch(QNetworkAccessManager& network, HttpRequest request, Sink sink, Finished finished)
    : network_(network)
    , request_(std::move(request))
    , sink_(std::move(sink))
    , finished_(std::move(finished))
{
    startTimer(idleTimer_, request_.idleLimit, "nothing came any more");
    startTimer(totalTimer_, request_.totalLimit, "the transfer is too slow");
    send(request_.url);
}

HttpFetch::~HttpFetch()
{
    dropReply();
}

void HttpFetch::startTimer(QTimer& timer, std::optional<std::chrono::milliseconds> limit, const char* excess)
{
    if (!limit)
        return;
    connect(&timer, &QTimer::timeout, this, [this, excess] {
        end({HttpEnd::Kind::timedOut, 0, QLatin1String(excess)});
    });
    timer.setSingleShot(true);
    timer.start(*limit);
}

void HttpFetch::send(const QUrl& url)
{
    if (!isSafeAddress(url)) {
        const HttpEnd refusal{HttpEnd::Kind::insecure, 0,
                              QStringLiteral("not a safe address: ") + url.toDisplayString()};
        QMetaObject::invokeMethod(
            this, [this, refusal] { end(refusal); }, Qt::QueuedConnection);
        return;
    }
    dropReply();
    QNetworkRequest request = plainRequest(connectionAddress(url));
    if (request_.json) {
        request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
        request.setHeader(QNetworkRequest::ContentLengthHeader, request_.json->size());
        request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
        body_ = std::make_unique<OnceReadable>(*request_.json);
    }
    reply_.reset(body_ ? network_.post(request, body_.get()) : network_.get(request));
    limitReadBuffer(*reply_);
    connect(reply_.get(), &QNetworkReply::metaDataChanged, this, &HttpFetch::headersArrived);
    connect(reply_.get(), &QNetworkReply::readyRead, this, &HttpFetch::bytesArrived);
    connect(reply_.get(), &QNetworkReply::finished, this, &HttpFetch::replyFinished);
}

void HttpFetch::headersArrived()
{
    restartIdleTimer();
    const int status = statusOf(*reply_);
    if (status == statusOk)
        return;
    if (request_.redirections > 0 && isRedirection(status))
        follow();
    else
        end({HttpEnd::Kind::status, status, QStringLiteral("HTTP %1").arg(status)});
}

void HttpFetch::follow()
{
    const QByteArray location = reply_->rawHeader("Location");
    const QUrl from = reply_->url();
    const QUrl to = from.resolved(QUrl::fromEncoded(location, QUrl::StrictMode));
    if (location.isEmpty() || ++redirectionsFollowed_ > request_.redirections) {
        end({HttpEnd::Kind::notUnderstood, 0, QStringLiteral("too many redirections, or one to nowhere")});
    } else if (!mayLeadTo(from, to)) {
        end({HttpEnd::Kind::insecure, 0, QStringLiteral("redirected to ") + to.toDisplayString()});
    } else {
        reply_->disconnect(this);
        // Not from inside a signal of the reply that goes.
        QMetaObject::invokeMethod(
            this, [this, to] { send(to); }, Qt::QueuedConnection);
    }
}

void HttpFetch::bytesArrived()
{
    restartIdleTimer();
    if (!end_ && !sink_(reply_->readAll()))
        end({HttpEnd::Kind::answered, statusOk, {}});
}

void HttpFetch::replyFinished()
{
    if (end_)
        return;
    if (reply_->error() != QNetworkReply::NoError) {
        end({failureOf(*reply_), statusOf(*reply_), reply_->errorString()});
        return;
    }
    bytesArrived();
    if (!end_)
        end({HttpEnd::Kind::answered, statusOk, {}});
}

void HttpFetch::restartIdleTimer()
{
    if (request_.idleLimit)
        idleTimer_.start();
}

void HttpFetch::end(const HttpEnd& end)
{
    if (end_)
        return;
    end_ = end;
    idleTimer_.stop();
    totalTimer_.stop();
    // The reply stays until the fetch goes: Qt complains about an abort inside one of its signals.
    if (reply_)
        reply_->disconnect(this);
    finished_(end);
}

void HttpFetch::dropReply()
{
    if (!reply_)
        return;
    reply_->disconnect();
    reply_->abort();
    reply_.reset();
}

std::unique_ptr<QNetworkAccessManager> makeNetwork()
{
    auto network = std::make_unique<QNetworkAccessManager>();
    network->setProxyFactory(std::make_unique<Proxies>().release());
    return network;
}

std::optional<HttpEnd> fetch(HttpRequest request, HttpFetch::Sink sink, const std::stop_token& stop)
{
    StoppableLoop loop(stop);
    const auto network = makeNetwork();
    const HttpFetch exchange(*network, std::move(request), std::move(sink),
                             [&loop](const HttpEnd&) { loop.quit(); });
    loop.run();
    return exchange.ended();
}

} // namespace corvandi
