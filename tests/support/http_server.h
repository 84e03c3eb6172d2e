#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace corvandi::testing {

/// A web server on this machine, on a port of its own. Each path is answered by a function that may
/// behave as badly as it likes.
///
/// Thread: the test's, whose event loop must run.
class HttpServer {
public:
    using Answer = std::function<void(QTcpSocket&)>;

    /// Over plain HTTP; `address` is one of this machine. The system chooses the port unless one is given.
    explicit HttpServer(const QHostAddress& address = QHostAddress::LocalHost, quint16 port = 0);
    /// Over TLS, with this certificate and key.
    explicit HttpServer(const QSslConfiguration& configuration);
    ~HttpServer();

    /// The address of a path on this server.
    [[nodiscard]] QUrl url(const QString& path, const QString& host = QStringLiteral("127.0.0.1")) const;
    [[nodiscard]] quint16 port() const { return listener_->serverPort(); }

    void answer(const QString& path, Answer answer);
    /// 200 with this content, and its length.
    void serve(const QString& path, const QByteArray& content);
    /// A status without content.
    void refuse(const QString& path, const QByteArray& status);
    void redirect(const QString& path, const QByteArray& location);

    /// The heads of all requests, in order.
    [[nodiscard]] const std::vector<QByteArray>& requests() const { return requests_; }
    /// What came with them; empty for a request that brings nothing.
    [[nodiscard]] const std::vector<QByteArray>& bodies() const { return bodies_; }
    /// Connections that are open now.
    [[nodiscard]] int connectionCount() const { return connections_; }
    [[nodiscard]] int connectionsEver() const { return connectionsEver_; }

private:
    HttpServer(std::unique_ptr<QTcpServer> listener, const QString& scheme, const QHostAddress& address,
               quint16 port = 0);
    void accept();
    void read(QTcpSocket& socket);

    std::unique_ptr<QTcpServer> listener_;
    QString scheme_;
    std::map<QByteArray, Answer> answers_;
    std::vector<QByteArray> requests_;
    std::vector<QByteArray> bodies_;
    int connections_ = 0;
    int connectionsEver_ = 0;
};

/// The head of an answer with this status; more header lines may follow each other in `headers`.
[[nodiscard]] QByteArray head(const QByteArray& status, const QByteArray& headers = {});

} // namespace corvandi::testing
