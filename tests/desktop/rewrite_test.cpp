// Dictations that a language model rewrites, behind a model server of the test's.

#include "data_folder.h"
#include "good_enough.h"
#include "session.h"

#include "support/http_server_thread.h"

#include <QTimer>

#include <gmock/gmock.h>

#include <thread>

namespace corvandi::testing {
namespace {

using namespace harness;
using namespace std::chrono_literals;
using Kind = TargetApplication::Kind;

const std::string rewritten = "Please go forward ten meters, and then stop there.";

/// A model server that streams the same text for every question.
class ModelServer {
public:
    explicit ModelServer(std::chrono::milliseconds delay = 0ms)
    {
        thread_.withServer([delay](HttpServer& server) {
            server.serve(QStringLiteral("/v1/models"), R"({"object":"list","data":[{"id":"small:1b"}]})");
            server.answer(QStringLiteral("/v1/chat/completions"), [delay](QTcpSocket& socket) {
                QTimer::singleShot(delay, &socket, [&socket] { stream(socket); });
            });
        });
    }

    [[nodiscard]] std::string preference() const
    {
        return "rewriteServer=http://127.0.0.1:" + std::to_string(thread_.port());
    }
    /// How many questions have come, and how many looks whether there is a model.
    [[nodiscard]] size_t questions() { return requestsThatBegin("POST /v1/chat/completions "); }
    [[nodiscard]] size_t looks() { return requestsThatBegin("GET /v1/models "); }
    /// Waits until nobody is connected any more; false when that does not happen.
    [[nodiscard]] bool waitUntilAlone()
    {
        const auto deadline = Clock::now() + patience;
        for (int connections = 1; Clock::now() < deadline; std::this_thread::sleep_for(10ms)) {
            thread_.withServer([&](const HttpServer& server) { connections = server.connectionCount(); });
            if (connections == 0)
                return true;
        }
        return false;
    }

private:
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

TEST(ARewrittenDictation, ShowsThatItIsPolishedAndArrives)
{
    ModelServer server;
    Session session;
    writePreferences({"cleanUpSentences=true", server.preference()});
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    EXPECT_EQ(session.dictate(recordings::goForward(), target), rewritten);

    session.program().waitForLine("Corvandi: Polishing");
    EXPECT_TRUE(data_folder::waitForHistory({rewritten}));
    EXPECT_EQ(server.questions(), 1U);
    EXPECT_FALSE(session.program().lineWith("rewrite failed"));
}

TEST(ADictationWithoutRewriting, AsksNobody)
{
    ModelServer server;
    Session session;
    writePreferences({server.preference()});
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    EXPECT_TRUE(
        saysWhatWasSaid(session.dictate(recordings::goForward(), target), recordings::goForward().reference));
    EXPECT_EQ(server.looks(), 0U);
}

TEST(AModelThatTakesTooLong, IsNotWaitedForAndTheLogSaysSo)
{
    ModelServer server(1min);
    Session session;
    writePreferences({"cleanUpSentences=true", server.preference()});
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    EXPECT_TRUE(
        saysWhatWasSaid(session.dictate(recordings::goForward(), target), recordings::goForward().reference));

    session.program().waitForLine("Corvandi: Polishing");
    session.program().waitForLine("Corvandi: rewrite failed: ");
    EXPECT_EQ(server.questions(), 1U);
    EXPECT_TRUE(server.waitUntilAlone()) << "the model must be told to stop";
}

TEST(AServerThatDoesNotRun, LeavesTheTextAsItIs)
{
    std::string preference;
    {
        const ModelServer gone;
        preference = gone.preference();
    }
    Session session;
    writePreferences({"cleanUpSentences=true", preference});
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    EXPECT_TRUE(
        saysWhatWasSaid(session.dictate(recordings::goForward(), target), recordings::goForward().reference));
    EXPECT_FALSE(session.program().lineWith("Corvandi: Polishing"));
    EXPECT_FALSE(session.program().lineWith("rewrite failed"));
}

} // namespace
} // namespace corvandi::testing
