#include "chat_server_fixture.h"

#include "system/language_model/chat_exchange.h"

#include <nlohmann/json.hpp>

#include <QPointer>

namespace corvandi {
namespace {

using namespace testing;
using enum LanguageModelAvailability;
using ::testing::IsEmpty;

const QByteArray answerOfOneToken = R"({"choices":[{"message":{"content":"He"},"finish_reason":"length"}]})";
const QByteArray wholeAnswer = R"({"choices":[{"message":{"content":"hello"},"finish_reason":"stop"}]})";

/// A server whose model takes its time to load.
class WarmUpTest : public ChatServerTest {
protected:
    WarmUpTest()
    {
        listModels(server);
        server.answer(chatPath, [this](QTcpSocket& socket) { loading = &socket; });
    }
    /// How often the model was asked anything.
    [[nodiscard]] long questions() const
    {
        return std::ranges::count_if(server.requests(), [](const QByteArray& request) {
            return request.startsWith("POST " + chatPath.toLatin1());
        });
    }
    void finishLoading(const QByteArray& status = "200 OK")
    {
        ASSERT_TRUE(waitUntil([this] { return loading != nullptr; }));
        loading->write(
            head(status, "Content-Length: " + QByteArray::number(answerOfOneToken.size()) + "\r\n"));
        loading->write(answerOfOneToken);
        loading = nullptr;
    }
    [[nodiscard]] bool becomes(LanguageModelAvailability expected)
    {
        return waitUntil([&] { return model().availability() == expected; });
    }
    /// As the first press does.
    void warmUp()
    {
        model().warmUp();
        ASSERT_TRUE(waitUntil([this] { return loading != nullptr; }));
    }

    QPointer<QTcpSocket> loading;
};

TEST_F(WarmUpTest, TheQuestionIsForOneTokenAndSaysNothing)
{
    EXPECT_EQ(nlohmann::json::parse(warmUpRequest(QStringLiteral("m:1b")).toStdString()),
              nlohmann::json::parse(R"({
        "model": "m:1b",
        "messages": [{"role": "user", "content": "Hi"}],
        "max_tokens": 1,
        "stream": false
    })"));
}

TEST_F(WarmUpTest, TheModelIsLookedForAndAskedAndNotReadyUntilItHasAnswered)
{
    warmUp();
    EXPECT_EQ(server.bodies().back(), warmUpRequest(QStringLiteral("small")));
    EXPECT_EQ(model().availability(), modelNotReady);
    EXPECT_EQ(model().modelName(), QStringLiteral("small"));
    EXPECT_EQ(look(), modelNotReady) << "the list of models says nothing about that";
    finishLoading();
    EXPECT_TRUE(becomes(available));
    EXPECT_EQ(questions(), 1);
}

TEST_F(WarmUpTest, NobodyIsHeldUp)
{
    server.answer(modelsPath, [](QTcpSocket&) {});
    const auto before = queue.now();
    model().warmUp();
    model().warmUp();
    EXPECT_LT(queue.now() - before, 100ms);
}

TEST_F(WarmUpTest, MorePressesDoNotAskAgainAndDoNotDisturb)
{
    warmUp();
    queue.ahead += 5s;
    model().warmUp();
    model().warmUp();
    EXPECT_EQ(lookLater(), modelNotReady);
    EXPECT_EQ(questions(), 1);
    ASSERT_TRUE(loading != nullptr);
    EXPECT_EQ(loading->state(), QAbstractSocket::ConnectedState);
    finishLoading();
    EXPECT_TRUE(becomes(available));
}

TEST_F(WarmUpTest, AModelThatHasAnsweredLatelyIsNotAskedAgain)
{
    warmUp();
    finishLoading();
    ASSERT_TRUE(becomes(available));
    queue.ahead += 3min;
    model().warmUp();
    EXPECT_EQ(look(), available);
    EXPECT_EQ(questions(), 1);
}

TEST_F(WarmUpTest, AfterAPauseItIsWarmedUpAgain)
{
    warmUp();
    finishLoading();
    ASSERT_TRUE(becomes(available));
    queue.ahead += 4min;
    warmUp();
    EXPECT_EQ(model().availability(), modelNotReady);
    finishLoading();
    EXPECT_TRUE(becomes(available));
    EXPECT_EQ(questions(), 2);
}

TEST_F(WarmUpTest, AnAnswerToATextKeepsItWarm)
{
    warmUp();
    finishLoading();
    ASSERT_TRUE(becomes(available));
    queue.ahead += 3min;
    server.serve(chatPath, wholeAnswer);
    EXPECT_EQ(std::get<QString>(ask()), QStringLiteral("hello"));
    queue.ahead += 3min;
    model().warmUp();
    EXPECT_EQ(look(), available);
    EXPECT_EQ(questions(), 2);
}

TEST_F(WarmUpTest, AQuestionThatWasAbandonedLeavesItCold)
{
    warmUp();
    finishLoading();
    ASSERT_TRUE(becomes(available));
    auto session = model().makeSession(QString());
    session->respond(QStringLiteral("hello"), [](const LanguageModelAnswer&) { ADD_FAILURE(); });
    ASSERT_TRUE(waitUntil([&] { return questions() == 2; }));
    session.reset();
    loading = nullptr;
    warmUp();
    EXPECT_EQ(questions(), 3);
    EXPECT_EQ(model().availability(), modelNotReady);
}

TEST_F(WarmUpTest, AModelThatRefusesCountsAsBeforeAndIsTriedAgain)
{
    warmUp();
    finishLoading("500 Internal Server Error");
    EXPECT_TRUE(becomes(available));
    EXPECT_THAT(log.lines(), IsEmpty());
    warmUp();
    EXPECT_EQ(questions(), 2);
}

TEST_F(WarmUpTest, AnotherModelIsWarmedUpInItsPlace)
{
    warmUp();
    const QPointer<QTcpSocket> first = loading;
    loading = nullptr;
    listModels(server, R"({"id":"small"},{"id":"large"})");
    set("rewriteModel", QStringLiteral("large"));
    queue.ahead += 3s;
    warmUp();
    EXPECT_EQ(server.bodies().back(), warmUpRequest(QStringLiteral("large")));
    EXPECT_TRUE(waitUntil([&] { return !first; })) << "the other one is not wanted any more";
    EXPECT_EQ(model().modelName(), QStringLiteral("large"));
}

TEST_F(WarmUpTest, AListThatIsSlowMeanwhileDoesNotEndTheLoading)
{
    warmUp();
    server.answer(modelsPath, [](QTcpSocket&) {});
    EXPECT_EQ(lookLater(), modelNotReady);
    ASSERT_TRUE(loading != nullptr);
    EXPECT_EQ(loading->state(), QAbstractSocket::ConnectedState);
    finishLoading();
    listModels(server);
    EXPECT_EQ(lookLater(), available);
}

TEST_F(WarmUpTest, WhereNoModelIsNothingIsAsked)
{
    listModels(server, "");
    model().warmUp();
    EXPECT_EQ(look(), modelNotReady);
    EXPECT_EQ(model().modelName(), std::nullopt);
    EXPECT_EQ(questions(), 0);
}

TEST_F(WarmUpTest, AServerThatHangsDoesNotDelayTheOneThatIsKnown)
{
    HttpServer hung;
    machine.usualServers = {hung.url(QString()), server.url(QString())};
    ASSERT_EQ(look(), available);
    hung.answer(modelsPath, [](QTcpSocket&) {});
    server.answer(modelsPath, [](QTcpSocket&) {});
    queue.ahead += 3s;
    warmUp();
    EXPECT_EQ(model().availability(), modelNotReady);
    finishLoading();
    EXPECT_TRUE(becomes(available)) << "what is known, until the look has ended";
}

} // namespace
} // namespace corvandi
