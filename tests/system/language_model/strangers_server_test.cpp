#include "chat_server_fixture.h"

#include <sys/fsuid.h>
#include <unistd.h>

#include <memory>

namespace corvandi {
namespace {

using namespace testing;
using enum LanguageModelAvailability;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A socket belongs to the one as whom its program opens files at that moment.
class StrangersServerTest : public ChatServerTest {
protected:
    StrangersServerTest()
    {
        listModels(server);
        server.serve(chatPath, R"({"choices":[{"message":{"content":"hello"},"finish_reason":"stop"}]})");
    }
    void SetUp() override
    {
        if (geteuid() != 0)
            GTEST_SKIP() << "only root can make a socket of somebody else's";
    }
    [[nodiscard]] static std::unique_ptr<HttpServer> strangers(quint16 port = 0)
    {
        constexpr uid_t stranger = 4242;
        setfsuid(stranger);
        auto server = std::make_unique<HttpServer>(QHostAddress::LocalHost, port);
        setfsuid(0);
        return server;
    }
    [[nodiscard]] static QString complaintOf(const HttpServer& of)
    {
        return QStringLiteral(
                   "Corvandi: the model server at http://127.0.0.1:%1 belongs to another user, and is "
                   "not asked")
            .arg(of.port());
    }
};

TEST_F(StrangersServerTest, IsNotAskedAndTheLogSaysSoOnce)
{
    const auto other = strangers();
    listModels(*other);
    machine.usualServers = {other->url(QString())};
    EXPECT_EQ(look(), otherReason);
    EXPECT_EQ(lookLater(), otherReason);
    EXPECT_EQ(other->connectionsEver(), 0);
    EXPECT_THAT(log.lines(), ElementsAre(complaintOf(*other)));
}

TEST_F(StrangersServerTest, DoesNotHideTheUsersOwn)
{
    const auto other = strangers();
    listModels(*other);
    machine.usualServers = {other->url(QString()), server.url(QString())};
    EXPECT_EQ(look(), available);
    EXPECT_EQ(other->connectionsEver(), 0);
    EXPECT_THAT(log.lines(), ElementsAre(complaintOf(*other)));
}

TEST_F(StrangersServerTest, IsNotAskedEvenIfThePreferencesNameIt)
{
    const auto other = strangers();
    listModels(*other);
    set("rewriteServer", address(*other));
    EXPECT_EQ(look(), otherReason);
    EXPECT_EQ(other->connectionsEver(), 0);
    EXPECT_THAT(log.lines(), ElementsAre(complaintOf(*other)));
}

TEST_F(StrangersServerTest, GetsNoTextWhenItTakesThePlaceOfTheOneThatWasFound)
{
    auto own = std::make_unique<HttpServer>();
    listModels(*own);
    machine.usualServers = {own->url(QString())};
    ASSERT_EQ(look(), available);
    const quint16 port = own->port();
    own.reset();
    const auto other = strangers(port);
    EXPECT_EQ(failure(), QStringLiteral("the model server belongs to another user"));
    EXPECT_EQ(other->connectionsEver(), 0);
    EXPECT_THAT(log.lines(), IsEmpty());
}

} // namespace
} // namespace corvandi
