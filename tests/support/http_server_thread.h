#pragma once

#include "support/http_server.h"

#include <QObject>
#include <QThread>

#include <functional>
#include <memory>
#include <utility>

namespace corvandi::testing {

/// A web server that answers from a thread of its own, whatever the test is doing meanwhile.
class HttpServerThread {
public:
    HttpServerThread()
    {
        context_->moveToThread(&thread_);
        thread_.start();
        use([this] { server_ = std::make_unique<HttpServer>(); });
    }
    ~HttpServerThread()
    {
        use([this] {
            server_.reset();
            context_.reset();
        });
        thread_.quit();
        thread_.wait();
    }
    HttpServerThread(const HttpServerThread&) = delete;
    HttpServerThread& operator=(const HttpServerThread&) = delete;

    /// Lets `work` do something with the server, on its thread, and waits until it is done.
    void withServer(const std::function<void(HttpServer&)>& work)
    {
        use([&] { work(*server_); });
    }
    [[nodiscard]] quint16 port() const { return server_->port(); }

private:
    void use(const std::function<void()>& work)
    {
        QMetaObject::invokeMethod(context_.get(), work, Qt::BlockingQueuedConnection);
    }

    QThread thread_;
    /// Lives on the thread, like the server.
    std::unique_ptr<QObject> context_ = std::make_unique<QObject>();
    std::unique_ptr<HttpServer> server_;
};

} // namespace corvandi::testing
