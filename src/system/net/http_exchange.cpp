#include "system/net/http_exchange.h"

#include "system/net/plain_request.h"

#include <QNetworkProxy>

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

} // namespace

HttpExchange::HttpExchange(QNetworkAccessManager& network, const QUrl& url, Sink sink, Finished finished)
    : sink_(std::move(sink))
    , finished_(std::move(finished))
{
    watch(network.get(plainRequest(url)));
}

HttpExchange::HttpExchange(QNetworkAccessManager& network, const QUrl& url, const QByteArray& json, Sink sink,
                           Finished finished)
    : sink_(std::move(sink))
    , finished_(std::move(finished))
    , body_(std::make_unique<OnceReadable>(json))
{
    QNetworkRequest request = plainRequest(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    request.setHeader(QNetworkRequest::ContentLengthHeader, json.size());
    request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    watch(network.post(request, body_.get()));
}

HttpExchange::~HttpExchange()
{
    reply_->disconnect();
    reply_->abort();
}

void HttpExchange::watch(QNetworkReply* reply)
{
    reply_.reset(reply);
    limitReadBuffer(*reply, bufferSize);
    connect(reply, &QNetworkReply::metaDataChanged, this, &HttpExchange::headersArrived);
    connect(reply, &QNetworkReply::readyRead, this, &HttpExchange::bytesArrived);
    connect(reply, &QNetworkReply::finished, this, &HttpExchange::replyFinished);
}

void HttpExchange::headersArrived()
{
    const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status != statusOk)
        end({HttpEnd::Kind::status, status});
}

void HttpExchange::bytesArrived()
{
    if (!end_ && !sink_(reply_->readAll()))
        end({HttpEnd::Kind::answered, statusOk});
}

void HttpExchange::replyFinished()
{
    if (end_)
        return;
    if (reply_->error() != QNetworkReply::NoError) {
        end(failure());
        return;
    }
    bytesArrived();
    if (!end_)
        end({HttpEnd::Kind::answered, statusOk});
}

HttpEnd HttpExchange::failure() const
{
    const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const bool isRefused = reply_->error() == QNetworkReply::ConnectionRefusedError;
    return {isRefused ? HttpEnd::Kind::unreachable : HttpEnd::Kind::brokenOff, status};
}

void HttpExchange::end(const HttpEnd& end)
{
    end_ = end;
    // The reply stays until the exchange goes: Qt complains about an abort inside one of its signals.
    reply_->disconnect(this);
    finished_(end);
}

std::unique_ptr<QNetworkAccessManager> makeLoopbackNetwork()
{
    auto network = std::make_unique<QNetworkAccessManager>();
    network->setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    return network;
}

} // namespace corvandi
