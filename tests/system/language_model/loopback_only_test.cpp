#include "chat_server_fixture.h"

#include <QNetworkProxy>

namespace corvandi {
namespace {

using namespace testing;
using enum LanguageModelAvailability;
using ::testing::ElementsAre;

class LoopbackOnlyTest : public ChatServerTest {
protected:
    LoopbackOnlyTest() { listModels(server); }
    ~LoopbackOnlyTest() override
    {
        qunsetenv("http_proxy");
        QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::DefaultProxy));
    }
};

TEST_F(LoopbackOnlyTest, AnAddressElsewhereIsRefusedAndTheLogSaysSo)
{
    set("rewriteServer", QStringLiteral("http://192.0.2.1:11434"));
    EXPECT_EQ(look(), otherReason);
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("Corvandi: the rewriteServer of the preferences is no http:// "
                                           "address of this machine")));
    EXPECT_EQ(server.connectionsEver(), 0) << "the usual ones are no substitute";
}

TEST_F(LoopbackOnlyTest, LocalhostIsFound)
{
    set("rewriteServer", QStringLiteral("http://localhost:%1").arg(server.port()));
    EXPECT_EQ(look(), available);
    EXPECT_TRUE(server.requests()[0].toLower().contains("host: 127.0.0.1:"));
}

TEST_F(LoopbackOnlyTest, LocalhostIsFoundInTheOtherFamilyOfAddresses)
{
    std::optional<HttpServer> other;
    try {
        other.emplace(QHostAddress::LocalHostIPv6);
    } catch (const std::runtime_error&) {
        GTEST_SKIP() << "this machine has no ::1";
    }
    listModels(*other);
    set("rewriteServer", QStringLiteral("http://localhost:%1").arg(other->port()));
    EXPECT_EQ(look(), available);
    EXPECT_EQ(other->requests().size(), 1U);
}

TEST_F(LoopbackOnlyTest, NoProxyIsAsked)
{
    const HttpServer proxy;
    qputenv("http_proxy", proxy.url(QString()).toEncoded());
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), proxy.port()));
    EXPECT_EQ(look(), available);
    EXPECT_EQ(proxy.connectionsEver(), 0);
}

TEST_F(LoopbackOnlyTest, ARedirectedListIsNotFollowed)
{
    HttpServer other;
    listModels(other);
    server.redirect(modelsPath, other.url(modelsPath).toEncoded());
    EXPECT_EQ(look(), otherReason);
    EXPECT_EQ(other.connectionsEver(), 0);
}

} // namespace
} // namespace corvandi
