#pragma once

#include "harness/waiting.h"
#include "support/http_server_thread.h"

#include <QTimer>

#include <chrono>
#include <string>
#include <thread>

namespace corvandi::testing {

inline const std::string rewritten = "Please go forward ten meters, and then stop there.";

/// A model server that streams the same text for every question. Only what warms it up is answered at once.
class ModelServer {
public:
    explicit ModelServer(std::chrono::milliseconds delay = {})
    {
        thread_.withServer([delay](HttpServer& server) {
            server.serve(QStringLiteral("/v1/models"), R"({"object":"list","data":[{"id":"small:1b"}]})");
            server.answer(QStringLiteral("/v1/chat/completions"), [delay, &server](QTcpSocket& socket) {
                if (isWarmUp(server.bodies().back()))
                    socket.write(head("200 OK", "Content-Length: 2\r\n") + "{}");
                else
                    QTimer::singleShot(delay, &socket, [&socket] { stream(socket); });
            });
        });
    }

    [[nodiscard]] std::string preference() const
    {
        return "rewriteServer=http://127.0.0.1:" + std::to_string(thread_.port());
    }
    /// How many questions have come, and how many looks whether there is a model.
    [[nodiscard]] size_t questions()
    {
        size_t count = 0;
        thread_.withServer([&](const HttpServer& server) {
            for (const QByteArray& body : server.bodies())
                count += body.isEmpty() || isWarmUp(body) ? 0 : 1;
        });
        return count;
    }
    [[nodiscard]] size_t looks() { return requestsThatBegin("GET /v1/models "); }
    /// Waits until nobody is connected any more; false when that does not happen.
    [[nodiscard]] bool waitUntilAlone()
    {
        const auto deadline = harness::Clock::now() + harness::patience;
        for (int connections = 1; harness::Clock::now() < deadline;
             std::this_thread::sleep_for(std::chrono::milliseconds(10))) {
            thread_.withServer([&](const HttpServer& server) { connections = server.connectionCount(); });
            if (connections == 0)
                return true;
        }
        return false;
    }

private:
    [[nodiscard]] static bool isWarmUp(const QByteArray& body) { return body.contains(R"("max_tokens":1)"); }
    static void stream(QTcpSocket& socket)
    {
        socket.write(head("200 OK", "Content-Type: text/event-stream\r\nConnection: close\r\n"));
        for (const QByteArray& word : QByteArray::fromStdString(rewritten).split(' '))
            socket.write("data: {\"choices\":[{\"delta\":{\"content\":\"" +
                         (word == "Please" ? QByteArray() : QByteArray(" ")) + word + "\"}}]}\n\n");
        socket.write("data: {\"choices\":[{\"delta\":{},\"finish_reason\":\"stop\"}]}\n\ndata: [DONE]\n\n");
    }
    [[nodiscard]] size_t requestsThatBegin(const char* start)
    {
        size_t count = 0;
        thread_.withServer([&](const HttpServer& server) {
            for (const QByteArray& request : server.requests())
                count += request.startsWith(start) ? 1 : 0;
        });
        return count;
    }

    HttpServerThread thread_;
};

} // namespace corvandi::testing
