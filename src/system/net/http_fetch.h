#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace corvandi {

/// What is asked for, and how much patience the server is given.
struct HttpRequest {
    /// Goes over HTTPS, or over HTTP to this machine (see `isSafeAddress`).
    QUrl url;
    /// A JSON document to post; without one the request is a GET.
    std::optional<QByteArray> json = std::nullopt;
    /// How many redirections a GET follows, none of them away from HTTPS. With none a redirection is a status
    /// like any other.
    int redirections = 0;
    /// Without a byte, while connecting and later.
    std::optional<std::chrono::milliseconds> idleLimit = std::nullopt;
    /// Altogether.
    std::optional<std::chrono::milliseconds> totalLimit = std::nullopt;
};

/// How a request has ended.
struct HttpEnd {
    enum class Kind {
        /// 200, and either all of the answer or as much as was wanted.
        answered,
        /// Another status.
        status,
        /// No such host, or nobody listens there.
        unreachable,
        /// The connection failed before all of the answer was there; without a status, before any of it.
        brokenOff,
        /// What came is no HTTP, or leads nowhere.
        notUnderstood,
        /// A certificate was refused, or a redirection left HTTPS.
        insecure,
        /// The server took longer than it was given.
        timedOut,
    };
    Kind kind = Kind::brokenOff;
    /// 0 when the server has sent none.
    int status = 0;
    /// What exactly happened, for the log.
    QString detail = {};
};

/// One request to a server, sent once: what is posted is never posted again. It says nothing about the person
/// or the program: no cookies, no referrer, no credentials, no language, and the bare name "Corvandi" as its
/// agent. Certificates are checked, nothing is kept in a cache, and an answer that is compressed is not
/// unpacked. Destroying it closes the connection.
///
/// Thread: that of the network, whose event loop must run. Bounded memory, whatever the server sends.
class HttpFetch : public QObject {
public:
    /// Takes the next bytes of the answer; false when no more are wanted.
    using Sink = std::function<bool(const QByteArray&)>;
    /// Called once, later. It must not destroy the fetch.
    using Finished = std::function<void(const HttpEnd&)>;

    HttpFetch(QNetworkAccessManager& network, HttpRequest request, Sink sink, Finished finished);
    ~HttpFetch() override;

    /// How it has ended; nothing while it has not.
    [[nodiscard]] const std::optional<HttpEnd>& ended() const { return end_; }

private:
    void startTimer(QTimer& timer, std::optional<std::chrono::milliseconds> limit, const char* excess);
    void send(const QUrl& url);
    void headersArrived();
    void follow();
    void bytesArrived();
    void replyFinished();
    void restartIdleTimer();
    void end(const HttpEnd& end);
    void dropReply();

    QNetworkAccessManager& network_;
    HttpRequest request_;
    Sink sink_;
    Finished finished_;
    /// What is posted; read by the reply.
    std::unique_ptr<QIODevice> body_;
    std::unique_ptr<QNetworkReply> reply_;
    QTimer idleTimer_;
    QTimer totalTimer_;
    int redirectionsFollowed_ = 0;
    std::optional<HttpEnd> end_;
};

/// A network for fetches. This machine is reached directly, whatever the environment says about proxies.
[[nodiscard]] std::unique_ptr<QNetworkAccessManager> makeNetwork();

/// Waits for the end of one request; nothing when it is told to stop before.
///
/// Thread: a worker's.
[[nodiscard]] std::optional<HttpEnd> fetch(HttpRequest request, HttpFetch::Sink sink,
                                           const std::stop_token& stop);

/// An answer that is kept, unless it is longer than it may be.
class BoundedAnswer {
public:
    explicit BoundedAnswer(qsizetype longest)
        : longest_(longest)
    {
    }

    /// Takes the next bytes; false when they are too many.
    [[nodiscard]] bool take(const QByteArray& bytes)
    {
        bytes_ += bytes;
        return !isTooLong();
    }
    [[nodiscard]] bool isTooLong() const { return bytes_.size() > longest_; }
    [[nodiscard]] const QByteArray& bytes() const { return bytes_; }

private:
    qsizetype longest_;
    QByteArray bytes_;
};

} // namespace corvandi
