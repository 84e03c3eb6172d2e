#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

namespace corvandi {

/// How a request has ended.
struct HttpEnd {
    enum class Kind {
        /// 200, and either all of the answer or as much as was wanted.
        answered,
        /// Another status.
        status,
        /// Nobody listens at the address.
        unreachable,
        /// There was a connection, but no whole answer.
        brokenOff,
    };
    Kind kind = Kind::brokenOff;
    /// 0 when the server has sent none.
    int status = 0;
    friend bool operator==(const HttpEnd&, const HttpEnd&) = default;
};

/// One request to a server on this machine, sent once and straight to it: no proxy, no redirections, no
/// second attempt with what was posted. Destroying it closes the connection.
///
/// Thread: that of the network, whose event loop must run. Bounded memory, whatever the server sends.
class HttpExchange : public QObject {
public:
    /// Takes the next bytes of the answer; false when no more are wanted.
    using Sink = std::function<bool(const QByteArray&)>;
    /// Called once, later. It must not destroy the exchange.
    using Finished = std::function<void(const HttpEnd&)>;

    /// Fetches what is at `url`.
    HttpExchange(QNetworkAccessManager& network, const QUrl& url, Sink sink, Finished finished);
    /// Posts a JSON document to `url`.
    HttpExchange(QNetworkAccessManager& network, const QUrl& url, const QByteArray& json, Sink sink,
                 Finished finished);
    ~HttpExchange() override;

    /// How it has ended; nothing while it has not.
    [[nodiscard]] const std::optional<HttpEnd>& ended() const { return end_; }

private:
    void watch(QNetworkReply* reply);
    void headersArrived();
    void bytesArrived();
    void replyFinished();
    [[nodiscard]] HttpEnd failure() const;
    void end(const HttpEnd& end);

    Sink sink_;
    Finished finished_;
    /// What is posted; read by the reply.
    std::unique_ptr<QIODevice> body_;
    std::unique_ptr<QNetworkReply> reply_;
    std::optional<HttpEnd> end_;
};

/// A network that reaches this machine only, directly.
[[nodiscard]] std::unique_ptr<QNetworkAccessManager> makeLoopbackNetwork();

} // namespace corvandi
