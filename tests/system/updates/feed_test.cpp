#include "update_fixture.h"

#include <algorithm>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using namespace testing;
using Kind = UpdateFailure::Kind;

class UpdateFeedTest : public UpdateTest {
protected:
    void serveFeed(const QByteArray& text) { server.serve(QStringLiteral("/feed"), text); }
    void answerFeed(HttpServer::Answer answer) { server.answer(QStringLiteral("/feed"), std::move(answer)); }
};

TEST_F(UpdateFeedTest, AGoodFeedGivesWhatIsSigned)
{
    serveRelease();
    EXPECT_TRUE(feedIsGood());
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(UpdateFeedTest, TheRequestTellsNothingAboutPersonOrProgram)
{
    serveRelease();
    (void)fetchFeed();

    ASSERT_EQ(server.requests().size(), 1U);
    // The names of headers have no case; how they are written depends on Qt's version.
    QByteArrayList lines = server.requests().front().trimmed().toLower().split('\n');
    for (QByteArray& line : lines)
        line = line.trimmed();
    std::sort(lines.begin(), lines.end());
    const QByteArray host = "host: 127.0.0.1:" + QByteArray::number(server.port());
    EXPECT_EQ(lines,
              (QByteArrayList{"accept-encoding: identity", "accept-language: *", "cache-control: no-cache",
                              "connection: keep-alive", "get /feed http/1.1", host, "pragma: no-cache",
                              "user-agent: corvandi"}));
    EXPECT_TRUE(server.requests().front().contains(": Corvandi\r\n"));
}

TEST_F(UpdateFeedTest, NoCookieIsSentBack)
{
    answerFeed([this](QTcpSocket& socket) {
        const QByteArray text = signer.feed(manifest);
        socket.write(head("200 OK", "Set-Cookie: person=7\r\nContent-Length: " +
                                        QByteArray::number(text.size()) + "\r\n") +
                     text);
    });
    (void)fetchFeed();
    (void)fetchFeed();
    ASSERT_EQ(server.requests().size(), 2U);
    EXPECT_FALSE(server.requests().back().toLower().contains("cookie"));
}

TEST_F(UpdateFeedTest, LocalhostIsThisMachine)
{
    serveRelease();
    feed = server.url(QStringLiteral("/feed"), QStringLiteral("localhost"));
    EXPECT_TRUE(feedIsGood());
}

TEST_F(UpdateFeedTest, ThisMachineIsReachedWithoutTheProxyOfTheEnvironment)
{
    serveRelease();
    qputenv("http_proxy", "http://127.0.0.1:1/");
    EXPECT_TRUE(feedIsGood());
    qunsetenv("http_proxy");
}

TEST_F(UpdateFeedTest, WhatIsNoFeedIsUnreadable)
{
    for (const char* text :
         {"", "\n", "{}", "<html>Sign in to the wireless network</html>", "corvandi-update-1 "}) {
        serveFeed(text);
        EXPECT_EQ(feedFailure().kind, Kind::unreadable) << text;
    }
}

TEST_F(UpdateFeedTest, ASignatureWithAnotherKeyIsUntrusted)
{
    serveFeed(Signer().feed(manifest));
    EXPECT_EQ(feedFailure().kind, Kind::untrusted);
}

TEST_F(UpdateFeedTest, EveryChangedByteIsUntrustedOrUnreadable)
{
    const QByteArray good = signer.feed(manifest);
    for (qsizetype i = 0; i < good.size(); i += 17) {
        QByteArray changed = good;
        changed[i] = static_cast<char>(changed[i] ^ 1);
        serveFeed(changed);
        const Kind kind = feedFailure().kind;
        EXPECT_TRUE(kind == Kind::untrusted || kind == Kind::unreadable) << i;
    }
}

TEST_F(UpdateFeedTest, AnotherVersionUnderTheSameSignatureIsUntrusted)
{
    serveFeed(signer.feed(manifest).replace("1.2.0", "9.9.9"));
    EXPECT_EQ(feedFailure().kind, Kind::untrusted);
}

TEST_F(UpdateFeedTest, ASignatureOfTheManifestAloneIsUntrusted)
{
    serveFeed("corvandi-update-1 " + signer.sign(manifest).toBase64() + '\n' + manifest);
    EXPECT_EQ(feedFailure().kind, Kind::untrusted);
}

TEST_F(UpdateFeedTest, AHugeFeedIsUnreadableAndNotReadToItsEnd)
{
    serveFeed(signer.feed(manifest + QByteArray(20'000'000, ' ')));
    EXPECT_EQ(feedFailure().kind, Kind::unreadable);
    EXPECT_TRUE(waitUntil([this] { return server.connectionCount() == 0; }));
}

TEST_F(UpdateFeedTest, AFeedOfTheLargestLengthIsRead)
{
    manifest += QByteArray(1'000'000 - signer.feed(manifest).size(), ' ');
    serveRelease();
    EXPECT_TRUE(feedIsGood());
    manifest += ' ';
    serveRelease();
    EXPECT_EQ(feedFailure().kind, Kind::unreadable);
}

TEST_F(UpdateFeedTest, AnEndlessFeedIsUnreadable)
{
    answerFeed([](QTcpSocket& socket) {
        socket.write(head("200 OK"));
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket,
                         [&socket] { socket.write(QByteArray(50'000, 'x')); });
    });
    EXPECT_EQ(feedFailure().kind, Kind::unreadable);
}

TEST_F(UpdateFeedTest, ACompressedAnswerIsNotUnpacked)
{
    answerFeed([](QTcpSocket& socket) {
        const QByteArray content = "\x1f\x8b\x08 and more";
        socket.write(head("200 OK", "Content-Encoding: gzip\r\nContent-Length: " +
                                        QByteArray::number(content.size()) + "\r\n") +
                     content);
    });
    EXPECT_EQ(feedFailure().kind, Kind::unreadable);
}

TEST_F(UpdateFeedTest, AnErrorOfTheServerIsNamed)
{
    for (const char* status : {"400 Bad Request", "401 Unauthorized", "403 Forbidden", "404 Not Found",
                               "407 Proxy Authentication Required", "410 Gone", "500 Internal Server Error",
                               "503 Service Unavailable"}) {
        server.refuse(QStringLiteral("/feed"), status);
        const UpdateFailure failure = feedFailure();
        EXPECT_EQ(failure.kind, Kind::refused) << status;
        EXPECT_EQ(failure.detail, QStringLiteral("HTTP ") + QString::fromLatin1(status).left(3));
    }
}

TEST_F(UpdateFeedTest, ASuccessThatIsNoFileIsRefused)
{
    for (const char* status : {"204 No Content", "206 Partial Content", "304 Not Modified"}) {
        server.refuse(QStringLiteral("/feed"), status);
        EXPECT_EQ(feedFailure().kind, Kind::refused) << status;
    }
}

TEST_F(UpdateFeedTest, WhatIsNoHttpIsRefusedOrUnreachable)
{
    answerFeed([](QTcpSocket& socket) {
        socket.write("220 mail.example ESMTP\r\n");
        socket.disconnectFromHost();
    });
    const Kind kind = feedFailure().kind;
    EXPECT_TRUE(kind == Kind::refused || kind == Kind::unreachable);
}

TEST_F(UpdateFeedTest, AConnectionThatIsClosedAtOnceIsUnreachable)
{
    answerFeed([](QTcpSocket& socket) { socket.abort(); });
    EXPECT_EQ(feedFailure().kind, Kind::unreachable);
}

TEST_F(UpdateFeedTest, AnAnswerThatBreaksOffIsIncomplete)
{
    answerFeed([](QTcpSocket& socket) {
        socket.write(head("200 OK", "Content-Length: 1000\r\n") + "corvandi-update-1 ");
        socket.disconnectFromHost();
    });
    EXPECT_EQ(feedFailure().kind, Kind::incomplete);
}

TEST_F(UpdateFeedTest, NoServerIsUnreachable)
{
    feed = QUrl(QStringLiteral("http://127.0.0.1:1/feed"));
    EXPECT_EQ(feedFailure().kind, Kind::unreachable);
}

TEST_F(UpdateFeedTest, ANameThatNobodyKnowsIsUnreachable)
{
    feed = QUrl(QStringLiteral("https://nobody.invalid/feed"));
    EXPECT_EQ(feedFailure().kind, Kind::unreachable);
}

TEST_F(UpdateFeedTest, ASilentServerIsGivenUp)
{
    patience = {300ms, 10s};
    answerFeed([](QTcpSocket&) {});
    EXPECT_EQ(feedFailure().kind, Kind::timedOut);
    EXPECT_TRUE(waitUntil([this] { return server.connectionCount() == 0; }));
}

TEST_F(UpdateFeedTest, AServerThatStopsHalfWayIsGivenUp)
{
    patience = {300ms, 10s};
    answerFeed(
        [](QTcpSocket& socket) { socket.write(head("200 OK", "Content-Length: 1000\r\n") + "corvandi"); });
    EXPECT_EQ(feedFailure().kind, Kind::timedOut);
}

TEST_F(UpdateFeedTest, ASlowDripIsGivenUpWhenItHasTakenTooLong)
{
    patience = {2s, 600ms};
    answerFeed([](QTcpSocket& socket) {
        socket.write(head("200 OK", "Content-Length: 100000\r\n"));
        auto* drip = new QTimer(&socket);
        QObject::connect(drip, &QTimer::timeout, &socket, [&socket] { socket.write("c"); });
        drip->start(20ms);
    });
    const UpdateFailure failure = feedFailure();
    EXPECT_EQ(failure.kind, Kind::timedOut);
    EXPECT_TRUE(failure.detail.contains(QStringLiteral("too slow")));
}

TEST_F(UpdateFeedTest, ACancelledRequestClosesItsConnectionAndSaysNothing)
{
    answerFeed([](QTcpSocket&) {});
    bool isAnswered = false;
    auto request = source().fetch([&](const auto&) { isAnswered = true; });
    ASSERT_TRUE(waitUntil([this] { return server.requests().size() == 1; }));
    request.reset();
    EXPECT_TRUE(waitUntil([this] { return server.connectionCount() == 0; }));
    EXPECT_FALSE(isAnswered);
}

TEST_F(UpdateFeedTest, ARequestThatIsCancelledAtOnceSaysNothing)
{
    serveRelease();
    bool isAnswered = false;
    (void)source().fetch([&](const auto&) { isAnswered = true; });
    EXPECT_TRUE(feedIsGood());
    EXPECT_FALSE(isAnswered);
}

TEST_F(UpdateFeedTest, TwoRequestsAtOnceAreBothAnswered)
{
    serveRelease();
    int answers = 0;
    const auto count = [&](const UpdateResult<QByteArray>& result) {
        answers += std::holds_alternative<QByteArray>(result) ? 1 : 0;
    };
    const auto first = source().fetch(count);
    const auto second = source().fetch(count);
    EXPECT_TRUE(waitUntil([&] { return answers == 2; }));
}

TEST_F(UpdateFeedTest, TheSourceGoesQuicklyWhileARequestHasJustBeenCancelled)
{
    answerFeed([](QTcpSocket&) {});
    std::optional<WebUpdateSource> other(std::in_place,
                                         UpdateConfiguration::parse(feedUrl().toString(), key, log), queue);
    auto request = other->fetch([](const auto&) {});
    ASSERT_TRUE(waitUntil([this] { return server.requests().size() == 1; }));
    const auto start = std::chrono::steady_clock::now();
    request.reset();
    other.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
}

} // namespace
} // namespace corvandi
