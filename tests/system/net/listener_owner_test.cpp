#include "system/net/listener_owner.h"

#include <QTcpServer>

#include <unistd.h>

#include <gtest/gtest.h>

namespace corvandi {
namespace {

constexpr quint16 port = 11434; // 0x2CAA
const QHostAddress here(QHostAddress::LocalHost);

/// A line of the kernel's for a socket at `place`; 0A is one that listens.
QByteArray line(const QByteArray& place, uint user, const QByteArray& state = "0A")
{
    return "   0: " + place + " 00000000:0000 " + state + " 00000000:00000000 00:00000000 00000000  " +
           QByteArray::number(user) + "        0 25913 1 0000000000000000 100 0 0 10 0\n";
}

const QByteArray heading =
    "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid\n";
const QByteArray loopback = "0100007F:2CAA";
const QByteArray everywhere = "00000000:2CAA";
const QByteArray loopback6 = "00000000000000000000000001000000:2CAA";
const QByteArray mapped = "0000000000000000FFFF00000100007F:2CAA";
const QByteArray everywhere6 = "00000000000000000000000000000000:2CAA";
constexpr uint stranger = 4242;

ListenerOwner ownerIn(const QByteArray& ipv4, const QByteArray& ipv6 = {}, const QHostAddress& address = here)
{
    return SocketTables{heading + ipv4, heading + ipv6}.ownerOf(address, port);
}

TEST(SocketTablesTest, WithoutAListenerItIsNobodys)
{
    EXPECT_EQ(ownerIn({}), ListenerOwner::nobody);
    EXPECT_EQ((SocketTables{}.ownerOf(here, port)), ListenerOwner::nobody);
    EXPECT_EQ(ownerIn(line("0100007F:2CAB", stranger)), ListenerOwner::nobody) << "another port";
    EXPECT_EQ(ownerIn(line("0200007F:2CAA", stranger)), ListenerOwner::nobody) << "another address";
    EXPECT_EQ(ownerIn(line(loopback, stranger, "01")), ListenerOwner::nobody) << "a connection";
}

TEST(SocketTablesTest, ThisUserAndServicesOfTheSystemMayBeTrusted)
{
    for (const uint user : {static_cast<uint>(geteuid()), 0U, 998U, 61184U, 65519U})
        EXPECT_EQ(ownerIn(line(loopback, user)), ListenerOwner::userOrSystem) << user;
}

TEST(SocketTablesTest, OtherPersonsMayNotBeTrusted)
{
    for (const uint user : {stranger, 60000U, 65534U})
        EXPECT_EQ(ownerIn(line(loopback, user)), ListenerOwner::somebodyElse) << user;
}

TEST(SocketTablesTest, WhoListensEverywhereListensHereToo)
{
    EXPECT_EQ(ownerIn(line(everywhere, stranger)), ListenerOwner::somebodyElse);
    EXPECT_EQ(ownerIn({}, line(everywhere6, stranger)), ListenerOwner::somebodyElse);
    EXPECT_EQ(ownerIn({}, line(mapped, stranger)), ListenerOwner::somebodyElse);
}

TEST(SocketTablesTest, OneStrangerAmongSeveralIsEnough)
{
    EXPECT_EQ(ownerIn(line(loopback, 0) + line(everywhere, stranger)), ListenerOwner::somebodyElse);
}

TEST(SocketTablesTest, TheNewerFamilyHasAListOfItsOwn)
{
    const QHostAddress here6(QHostAddress::LocalHostIPv6);
    EXPECT_EQ(ownerIn({}, line(loopback6, stranger), here6), ListenerOwner::somebodyElse);
    EXPECT_EQ(ownerIn({}, line(everywhere6, 0), here6), ListenerOwner::userOrSystem);
    EXPECT_EQ(ownerIn(line(loopback, stranger), {}, here6), ListenerOwner::nobody);
}

TEST(SocketTablesTest, AListenerOfThisProcessIsFound)
{
    for (const auto address : {QHostAddress::LocalHost, QHostAddress::AnyIPv4, QHostAddress::Any}) {
        QTcpServer server;
        ASSERT_TRUE(server.listen(address));
        const quint16 at = server.serverPort();
        EXPECT_EQ(SocketTables::ofThisMachine().ownerOf(here, at), ListenerOwner::userOrSystem);
        server.close();
        EXPECT_EQ(SocketTables::ofThisMachine().ownerOf(here, at), ListenerOwner::nobody);
    }
}

} // namespace
} // namespace corvandi
