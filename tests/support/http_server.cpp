#include "support/http_server.h"

#include <QSslServer>

#include <stdexcept>

namespace corvandi::testing {
namespace {

std::unique_ptr<QTcpServer> secureListener(const QSslConfiguration& configuration)
{
    auto listener = std::make_unique<QSslServer>();
    listener->setSslConfiguration(configuration);
    return listener;
}

qsizetype announcedLength(const QByteArray& requestHead)
{
    constexpr QByteArrayView name("\r\ncontent-length:");
    const QByteArray lower = requestHead.toLower();
    const qsizetype start = lower.indexOf(name);
    if (start < 0)
        return 0;
    const qsizetype number = start + name.size();
    return lower.sliced(number, lower.indexOf('\r', number) - number).trimmed().toLongLong();
}

} // namespace

QByteArray head(const QByteArray& status, const QByteArray& headers)
{
    return "HTTP/1.1 " + status + "\r\n" + headers + "\r\n";
}

HttpServer::HttpServer(const QHostAddress& address, quint16 port)
    : HttpServer(std::make_unique<QTcpServer>(), QStringLiteral("http"), address, port)
{
}

HttpServer::HttpServer(const QSslConfiguration& configuration)
    : HttpServer(secureListener(configuration), QStringLiteral("https"), QHostAddress::LocalHost)
{
}

HttpServer::HttpServer(std::unique_ptr<QTcpServer> listener, const QString& scheme,
                       const QHostAddress& address, quint16 port)
    : listener_(std::move(listener))
    , scheme_(scheme)
{
    QObject::connect(listener_.get(), &QTcpServer::pendingConnectionAvailable, listener_.get(),
                     [this] { accept(); });
    if (!listener_->listen(address, port))
        throw std::runtime_error("the test server can't listen");
}

HttpServer::~HttpServer()
{
    for (QTcpSocket* socket : listener_->findChildren<QTcpSocket*>())
        socket->disconnect();
}

QUrl HttpServer::url(const QString& path, const QString& host) const
{
    return QUrl(QStringLiteral("%1://%2:%3%4").arg(scheme_, host).arg(port()).arg(path));
}

void HttpServer::answer(const QString& path, Answer answer)
{
    answers_[path.toLatin1()] = std::move(answer);
}

void HttpServer::serve(const QString& path, const QByteArray& content)
{
    answer(path, [content](QTcpSocket& socket) {
        socket.write(head("200 OK", "Content-Length: " + QByteArray::number(content.size()) + "\r\n"));
        socket.write(content);
    });
}

void HttpServer::refuse(const QString& path, const QByteArray& status)
{
    answer(path, [status](QTcpSocket& socket) { socket.write(head(status, "Content-Length: 0\r\n")); });
}

void HttpServer::redirect(const QString& path, const QByteArray& location)
{
    answer(path, [location](QTcpSocket& socket) {
        socket.write(head("302 Found", "Location: " + location + "\r\nContent-Length: 0\r\n"));
    });
}

void HttpServer::accept()
{
    while (QTcpSocket* socket = listener_->nextPendingConnection()) {
        ++connections_;
        ++connectionsEver_;
        QObject::connect(socket, &QTcpSocket::disconnected, socket, [this, socket] {
            --connections_;
            socket->deleteLater();
        });
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { read(*socket); });
        read(*socket);
    }
}

void HttpServer::read(QTcpSocket& socket)
{
    const QByteArray waiting = socket.peek(socket.bytesAvailable());
    const qsizetype end = waiting.indexOf("\r\n\r\n");
    if (end < 0)
        return;
    const qsizetype headLength = end + 4;
    const qsizetype bodyLength = announcedLength(waiting.first(headLength));
    if (waiting.size() < headLength + bodyLength)
        return;
    const QByteArray request = socket.read(headLength);
    requests_.push_back(request);
    bodies_.push_back(socket.read(bodyLength));
    const QByteArray path = request.split(' ').value(1);
    if (const auto found = answers_.find(path); found != answers_.end())
        found->second(socket);
    else
        socket.write(head("404 Not Found", "Content-Length: 0\r\n"));
}

} // namespace corvandi::testing
