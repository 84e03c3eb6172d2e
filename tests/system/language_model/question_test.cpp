#include "chat_server_fixture.h"

#include <QTimer>

namespace corvandi {
namespace {

using namespace testing;

QByteArray piece(const QByteArray& text)
{
    return "data: {\"choices\":[{\"delta\":{\"content\":\"" + text + "\"}}]}\n\n";
}

const QByteArray
    ending("data: {\"choices\":[{\"delta\":{},\"finish_reason\":\"stop\"}]}\n\ndata: [DONE]\n\n");

QByteArray chunk(const QByteArray& bytes)
{
    return QByteArray::number(bytes.size(), 16) + "\r\n" + bytes + "\r\n";
}

/// Questions to a server that has a model.
class QuestionTest : public ChatServerTest {
protected:
    QuestionTest()
    {
        listModels(server);
        look();
    }
    void onQuestion(HttpServer::Answer answer) { server.answer(chatPath, std::move(answer)); }
    /// How many questions have reached the server.
    [[nodiscard]] auto questions() const
    {
        return std::ranges::count_if(server.requests(),
                                     [](const QByteArray& request) { return request.startsWith("POST "); });
    }
};

TEST_F(QuestionTest, TheServerGetsTheConversationAndNothingElse)
{
    server.serve(chatPath, R"({"choices":[{"message":{"content":"Hello."}}]})");
    EXPECT_EQ(std::get<QString>(ask(QString::fromUtf8(" grüß \n"))), QStringLiteral("Hello."));
    EXPECT_TRUE(server.requests().back().startsWith("POST /v1/chat/completions HTTP/1.1\r\n"));
    EXPECT_TRUE(server.requests().back().toLower().contains("content-type: application/json\r\n"));
    EXPECT_EQ(server.bodies().back().toStdString(),
              R"({"messages":[{"content":"Be brief.","role":"system"},{"content":" grüß \n","role":"user"}],)"
              R"("model":"small","stream":true})");
}

TEST_F(QuestionTest, EachConversationKnowsNothingOfTheOneBefore)
{
    server.serve(chatPath, R"({"choices":[{"message":{"content":"Hello."}}]})");
    (void)ask(QStringLiteral("one"));
    (void)ask(QStringLiteral("two"));
    EXPECT_FALSE(server.bodies().back().contains("one"));
    EXPECT_FALSE(server.bodies().back().contains("Hello"));
}

TEST_F(QuestionTest, AStreamIsPutTogether)
{
    onQuestion([](QTcpSocket& socket) {
        socket.write(head("200 OK", "Content-Type: text/event-stream\r\nTransfer-Encoding: chunked\r\n"));
        for (const QByteArray& part : {piece("Hello"), piece(", Ann."), ending})
            socket.write(chunk(part));
        socket.write(chunk({}));
    });
    EXPECT_EQ(std::get<QString>(ask()), QStringLiteral("Hello, Ann."));
}

TEST_F(QuestionTest, ASlowStreamIsWaitedFor)
{
    onQuestion([](QTcpSocket& socket) {
        socket.write(head("200 OK", "Transfer-Encoding: chunked\r\n") + chunk(piece("Hello")));
        QTimer::singleShot(100ms, &socket, [&socket] { socket.write(chunk(piece(", Ann.") + ending)); });
    });
    EXPECT_EQ(std::get<QString>(ask()), QStringLiteral("Hello, Ann.")) << "though the chunks have not ended";
}

TEST_F(QuestionTest, AnAnswerMayEndWithTheConnection)
{
    onQuestion([](QTcpSocket& socket) {
        socket.write(head("200 OK", "Connection: close\r\n") + piece("Hello.") + ending);
        socket.close();
    });
    EXPECT_EQ(std::get<QString>(ask()), QStringLiteral("Hello."));
}

TEST_F(QuestionTest, AStreamThatIsClosedHalfWayIsAFailure)
{
    onQuestion([](QTcpSocket& socket) {
        socket.write(head("200 OK", "Transfer-Encoding: chunked\r\n") + chunk(piece("Hello")));
        socket.close();
    });
    EXPECT_TRUE(failure().endsWith(QStringLiteral(" broke off")));
}

TEST_F(QuestionTest, ADocumentThatIsClosedHalfWayIsAFailure)
{
    onQuestion([](QTcpSocket& socket) {
        socket.write(head("200 OK", "Content-Length: 1000\r\n") + "{\"choices\":[");
        socket.close();
    });
    EXPECT_EQ(failure(), QStringLiteral("the connection to the model server broke off"));
}

TEST_F(QuestionTest, AServerThatClosesWithoutAWordGetsTheTextOnce)
{
    onQuestion([](QTcpSocket& socket) { socket.close(); });
    EXPECT_EQ(failure(), QStringLiteral("the connection to the model server broke off"));
    runFor(50ms);
    EXPECT_EQ(questions(), 1);
}

TEST_F(QuestionTest, ErrorsAreFailures)
{
    for (const char* status : {"400 Bad Request", "401 Unauthorized", "404 Not Found", "407 Proxy",
                               "500 Internal Server Error", "503 Service Unavailable"}) {
        onQuestion(
            [status](QTcpSocket& socket) { socket.write(head(status, "Content-Length: 5\r\n") + "hello"); });
        EXPECT_EQ(failure(),
                  QStringLiteral("the model server answers with HTTP %1").arg(QLatin1String(status, 3)));
    }
    EXPECT_EQ(questions(), 6);
}

TEST_F(QuestionTest, ARedirectionIsNotFollowed)
{
    HttpServer other;
    other.serve(chatPath, R"({"choices":[{"message":{"content":"Hello."}}]})");
    for (const QByteArray& status : {QByteArray("302 Found"), QByteArray("307 Temporary Redirect")}) {
        const QByteArray location = other.url(chatPath).toEncoded();
        onQuestion([status, location](QTcpSocket& socket) {
            socket.write(head(status, "Location: " + location + "\r\nContent-Length: 0\r\n"));
        });
        EXPECT_EQ(failure(), QStringLiteral("the model server answers with HTTP %1")
                                 .arg(QLatin1String(status.constData(), 3)));
    }
    EXPECT_EQ(other.connectionsEver(), 0);
}

TEST_F(QuestionTest, AnEmptyAnswerIsAFailure)
{
    server.serve(chatPath, "");
    EXPECT_EQ(failure(), QStringLiteral("the server's answer is empty"));
}

TEST_F(QuestionTest, AnAnswerThatIsNoUnicodeIsAFailure)
{
    server.serve(chatPath, piece("\xFF\xFE") + ending);
    EXPECT_EQ(failure(), QStringLiteral("the server's answer is not understood"));
}

TEST_F(QuestionTest, AnAnswerThatIsNoHttpIsAFailure)
{
    onQuestion([](QTcpSocket& socket) {
        socket.write("hello\r\n\r\n");
        socket.close();
    });
    EXPECT_EQ(failure(), QStringLiteral("the connection to the model server broke off"));
}

TEST_F(QuestionTest, AnEndlessAnswerIsGivenUpBeforeItFillsTheMemory)
{
    qint64 sent = 0;
    onQuestion([&sent](QTcpSocket& socket) {
        socket.write(head("200 OK"));
        const QByteArray more = piece(QByteArray(10'000, 'a'));
        const auto write = [&socket, more] {
            while (socket.bytesToWrite() < 1'000'000 && socket.state() == QTcpSocket::ConnectedState)
                socket.write(more);
        };
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, [write, &sent](qint64 bytes) {
            sent += bytes;
            write();
        });
        write();
    });
    EXPECT_EQ(failure(), QStringLiteral("the answer is too long"));
    EXPECT_TRUE(waitUntil([&] { return server.connectionCount() == 0; }));
    EXPECT_LT(sent, 16 * 1024 * 1024) << "of which the kernel has held most";
}

TEST_F(QuestionTest, AServerThatHasGoneIsAFailure)
{
    auto passing = std::make_unique<HttpServer>();
    listModels(*passing);
    set("rewriteServer", address(*passing));
    EXPECT_EQ(lookLater(), LanguageModelAvailability::available);
    passing.reset();
    EXPECT_EQ(failure(), QStringLiteral("the model server does not run any more"));
}

TEST_F(QuestionTest, WithoutAServerThereIsNoModelToAsk)
{
    server.refuse(modelsPath, "503 Service Unavailable");
    lookLater();
    EXPECT_EQ(failure(), QStringLiteral("there is no language model"));
    EXPECT_EQ(questions(), 0);
}

TEST_F(QuestionTest, WhoIsAnsweredMayEndTheConversation)
{
    server.serve(chatPath, R"({"choices":[{"message":{"content":"Hello."}}]})");
    auto session = model().makeSession(QString());
    session->respond(QStringLiteral("hello"), [&](const LanguageModelAnswer&) { session.reset(); });
    EXPECT_TRUE(waitUntil([&] { return !session; }));
}

} // namespace
} // namespace corvandi
