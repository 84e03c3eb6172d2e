#include "chat_server_fixture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace corvandi {
namespace {

using namespace testing;
using enum LanguageModelAvailability;
using ::testing::ElementsAre;

class AvailabilityTest : public ChatServerTest {
protected:
    /// An address of this machine at which nobody listens.
    [[nodiscard]] static QUrl deserted()
    {
        const HttpServer gone;
        return gone.url(QString());
    }
    static void hang(HttpServer& hung)
    {
        hung.answer(modelsPath, [](QTcpSocket&) {});
    }
};

TEST_F(AvailabilityTest, NothingIsKnownBeforeTheFirstLook)
{
    listModels(server);
    EXPECT_EQ(model().availability(), otherReason);
    runFor(20ms);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(AvailabilityTest, AServerWithAModelIsAvailable)
{
    listModels(server);
    EXPECT_EQ(look(), available);
    ASSERT_EQ(server.requests().size(), 1U);
    EXPECT_TRUE(server.requests()[0].startsWith("GET /v1/models HTTP/1.1\r\n"));
}

TEST_F(AvailabilityTest, TheRequestSaysNothingAboutThePerson)
{
    listModels(server);
    look();
    const QByteArray request = server.requests()[0].toLower();
    EXPECT_TRUE(request.contains("user-agent: corvandi\r\n"));
    for (const char* header : {"cookie", "referer", "authorization", "origin"})
        EXPECT_FALSE(request.contains(header)) << header;
    EXPECT_TRUE(request.contains("accept-language: *\r\n"));
}

TEST_F(AvailabilityTest, AServerWithoutModelsIsNotReady)
{
    listModels(server, "");
    EXPECT_EQ(look(), modelNotReady);
}

TEST_F(AvailabilityTest, AServerThatHasOnlyModelsForSearchIsNotReady)
{
    listModels(server, R"({"id":"nomic-embed-text"})");
    EXPECT_EQ(look(), modelNotReady);
}

TEST_F(AvailabilityTest, AServerThatIsLoadingIsNotReady)
{
    server.refuse(modelsPath, "503 Service Unavailable");
    EXPECT_EQ(look(), modelNotReady);
}

TEST_F(AvailabilityTest, AServerThatHasLoadedBecomesAvailable)
{
    server.refuse(modelsPath, "503 Service Unavailable");
    look();
    listModels(server);
    EXPECT_EQ(lookLater(), available);
}

TEST_F(AvailabilityTest, AServerThatLacksTheNamedModelIsNotReady)
{
    listModels(server);
    set("rewriteModel", QStringLiteral("large"));
    EXPECT_EQ(look(), modelNotReady);
    listModels(server, R"({"id":"small"},{"id":"large:latest"})");
    EXPECT_EQ(lookLater(), available);
}

TEST_F(AvailabilityTest, AServerThatHangsIsNotReady)
{
    hang(server);
    EXPECT_EQ(look(), modelNotReady);
    EXPECT_TRUE(waitUntil([&] { return server.connectionCount() == 0; })) << "nothing may be left open";
}

TEST_F(AvailabilityTest, AServerThatSendsItsListTooSlowlyIsNotReady)
{
    server.answer(modelsPath, [](QTcpSocket& socket) { socket.write(head("200 OK") + "{\"data\":"); });
    EXPECT_EQ(look(), modelNotReady);
}

TEST_F(AvailabilityTest, AServerThatHangsDoesNotHideAnother)
{
    HttpServer hung;
    hang(hung);
    machine.usualServers = {hung.url(QString()), server.url(QString())};
    listModels(server);
    EXPECT_EQ(look(), available);
}

TEST_F(AvailabilityTest, WithoutAServerThereIsNoModel)
{
    machine.usualServers = {deserted()};
    EXPECT_EQ(look(), otherReason);
}

TEST_F(AvailabilityTest, AnInstalledServerThatDoesNotRunCanBeTurnedOn)
{
    const QTemporaryDir folder;
    QFile program(folder.filePath(QStringLiteral("ollama")));
    ASSERT_TRUE(program.open(QIODevice::WriteOnly) &&
                program.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    machine.usualServers = {deserted()};
    machine.folders.programs = {folder.path()};
    EXPECT_EQ(look(), appleIntelligenceNotEnabled);
}

TEST_F(AvailabilityTest, ANamedServerThatDoesNotRunCanBeTurnedOn)
{
    set("rewriteServer", deserted().toString());
    EXPECT_EQ(look(), appleIntelligenceNotEnabled);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(AvailabilityTest, ASmallMachineIsNotEligible)
{
    machine.usualServers = {deserted()};
    machine.memory = 2 * gibibyte;
    EXPECT_EQ(look(), deviceNotEligible);
}

TEST_F(AvailabilityTest, FourGibibytesLessWhatTheKernelKeepsAreEnough)
{
    machine.usualServers = {deserted()};
    machine.memory = 4 * gibibyte - gibibyte / 4;
    EXPECT_EQ(look(), otherReason);
}

TEST_F(AvailabilityTest, AModelOnASmallMachineIsAvailableAllTheSame)
{
    machine.memory = gibibyte;
    listModels(server);
    EXPECT_EQ(look(), available);
}

TEST_F(AvailabilityTest, AServerOfAnotherKindIsNoModelServer)
{
    for (const QByteArray& content :
         {QByteArray("<html></html>"), QByteArray("{\"data\":[1]}"), QByteArray()}) {
        server.serve(modelsPath, content);
        EXPECT_EQ(lookLater(), otherReason);
    }
    server.refuse(modelsPath, "404 Not Found");
    EXPECT_EQ(lookLater(), otherReason);
    server.answer(modelsPath, [](QTcpSocket& socket) { socket.close(); });
    EXPECT_EQ(lookLater(), otherReason);
    server.answer(modelsPath, [](QTcpSocket& socket) {
        socket.write("SSH-2.0-Server\r\n");
        socket.close();
    });
    EXPECT_EQ(lookLater(), otherReason);
    EXPECT_TRUE(log.lines().empty()) << "what others run is nobody's business";
}

TEST_F(AvailabilityTest, AnEndlessListIsNone)
{
    server.answer(modelsPath, [](QTcpSocket& socket) {
        socket.write(head("200 OK"));
        socket.write(QByteArray(3'000'000, ' '));
    });
    EXPECT_EQ(look(), otherReason);
}

TEST_F(AvailabilityTest, ANamedServerThatAnswersSomethingElseIsComplainedAboutOnce)
{
    set("rewriteServer", address(server));
    server.refuse(modelsPath, "401 Unauthorized");
    EXPECT_EQ(look(), otherReason);
    EXPECT_EQ(lookLater(), otherReason);
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral(
                                 "Corvandi: the rewriteServer of the preferences answers with HTTP 401")));
}

TEST_F(AvailabilityTest, ANamedServerIsTheOnlyOneThatIsAsked)
{
    HttpServer named;
    listModels(server);
    listModels(named, "");
    set("rewriteServer", address(named));
    EXPECT_EQ(look(), modelNotReady);
    EXPECT_EQ(server.connectionsEver(), 0);
}

TEST_F(AvailabilityTest, SwitchedOffInThePreferencesNobodyIsAsked)
{
    listModels(server);
    defaults.set(QStringLiteral("rewriteServerEnabled"), false);
    EXPECT_EQ(look(), appleIntelligenceNotEnabled);
    EXPECT_EQ(server.connectionsEver(), 0);
}

TEST_F(AvailabilityTest, ForTwoSecondsTheFindingsCount)
{
    listModels(server);
    look();
    queue.ahead += 1500ms;
    EXPECT_EQ(look(), available);
    EXPECT_EQ(server.requests().size(), 1U);
    queue.ahead += 501ms;
    EXPECT_EQ(look(), available);
    EXPECT_EQ(server.requests().size(), 2U);
}

TEST_F(AvailabilityTest, AServerThatHasGoneIsMissedAfterTwoSeconds)
{
    auto passing = std::make_unique<HttpServer>();
    listModels(*passing);
    machine.usualServers = {passing->url(QString())};
    EXPECT_EQ(look(), available);
    passing.reset();
    EXPECT_EQ(lookLater(), otherReason);
}

TEST_F(AvailabilityTest, ThoseWhoLookAtATimeShareOneRequest)
{
    listModels(server);
    int told = 0;
    const auto first = model().refreshAvailability([&] { ++told; });
    const auto second = model().refreshAvailability([&] { ++told; });
    EXPECT_TRUE(waitUntil([&] { return told == 2; }));
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(AvailabilityTest, WhoGivesUpIsNotTold)
{
    listModels(server);
    bool isTold = false;
    (void)model().refreshAvailability([&] { isTold = true; });
    EXPECT_EQ(look(), available);
    runFor(20ms);
    EXPECT_FALSE(isTold);
}

TEST_F(AvailabilityTest, WhoIsToldMayGiveUpAnother)
{
    listModels(server);
    bool isTold = false;
    std::unique_ptr<Registration> second;
    const auto first = model().refreshAvailability([&] { second.reset(); });
    second = model().refreshAvailability([&] { isTold = true; });
    EXPECT_TRUE(waitUntil([&] { return !second; }));
    runFor(20ms);
    EXPECT_FALSE(isTold);
}

TEST_F(AvailabilityTest, TheFirstOfSeveralServersIsTaken)
{
    HttpServer later;
    machine.usualServers = {deserted(), server.url(QString()), later.url(QString())};
    listModels(server, R"({"id":"first"})");
    listModels(later, R"({"id":"later"})");
    server.serve(chatPath, R"({"choices":[{"message":{"content":"Hello."}}]})");
    EXPECT_EQ(look(), available);
    EXPECT_EQ(std::get<QString>(ask()), QStringLiteral("Hello."));
    EXPECT_TRUE(server.bodies().back().contains("\"first\""));
}

TEST_F(AvailabilityTest, AsLongAsItHasAModelTheSameServerIsAskedAlone)
{
    HttpServer earlier;
    machine.usualServers = {earlier.url(QString()), server.url(QString())};
    listModels(server);
    EXPECT_EQ(look(), available);
    EXPECT_EQ(earlier.connectionsEver(), 1);
    EXPECT_EQ(lookLater(), available);
    EXPECT_EQ(earlier.connectionsEver(), 1);

    listModels(earlier);
    server.refuse(modelsPath, "503 Service Unavailable");
    EXPECT_EQ(lookLater(), available);
    EXPECT_EQ(earlier.connectionsEver(), 2);
}

TEST_F(AvailabilityTest, AModelMayGoWhileItsServersAreAsked)
{
    hang(server);
    {
        ChatServerModel passing(queue, defaults, log, machine);
        const auto registration = passing.refreshAvailability([] { ADD_FAILURE(); });
        EXPECT_TRUE(waitUntil([&] { return server.connectionCount() == 1; }));
    }
    EXPECT_TRUE(waitUntil([&] { return server.connectionCount() == 0; }));
}

} // namespace
} // namespace corvandi
