#include "platform/linux/log/syslog_socket.h"

#include "log_ends.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using testing::LogDaemon;

class SyslogSocketTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    std::string path = folder.filePath(QStringLiteral("log")).toStdString();
    SyslogSocket socket{path};
};

TEST_F(SyslogSocketTest, SendsAnOrdinarySyslogDatagram)
{
    const LogDaemon daemon(path);
    socket.writeLine("Corvandi: it happened");
    const auto datagram = daemon.take();
    ASSERT_TRUE(datagram);
    // Priority 13 is the facility "user" with the severity "notice".
    const QRegularExpression form(
        QStringLiteral("^<13>[A-Z][a-z]{2} [ 123][0-9] [0-9]{2}:[0-9]{2}:[0-9]{2} corvandi\\[%1\\]: "
                       "Corvandi: it happened$")
            .arg(getpid()));
    EXPECT_TRUE(form.match(QString::fromUtf8(*datagram)).hasMatch()) << datagram->toStdString();
}

TEST_F(SyslogSocketTest, WithoutADaemonTheLineIsLostQuietly)
{
    socket.writeLine("nobody listens");
    const LogDaemon daemon(path);
    EXPECT_EQ(daemon.take(), std::nullopt);
}

TEST_F(SyslogSocketTest, ADaemonThatStartsLaterIsFound)
{
    socket.writeLine("too early");
    const LogDaemon daemon(path);
    socket.writeLine("in time");
    const auto datagram = daemon.take();
    ASSERT_TRUE(datagram);
    EXPECT_TRUE(datagram->endsWith("in time"));
}

TEST_F(SyslogSocketTest, ADaemonThatStartsAnewIsFoundWithoutLosingALine)
{
    {
        const LogDaemon first(path);
        socket.writeLine("one");
        ASSERT_TRUE(first.take());
    }
    const LogDaemon second(path);
    socket.writeLine("two");
    const auto datagram = second.take();
    ASSERT_TRUE(datagram);
    EXPECT_TRUE(datagram->endsWith("two"));
}

TEST_F(SyslogSocketTest, AStuckDaemonStopsNobodyAndGetsLinesAgainLater)
{
    const LogDaemon daemon(path);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 20000; ++i)
        socket.writeLine("line");
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
    int taken = 0;
    while (daemon.take())
        ++taken;
    EXPECT_GT(taken, 0);
    EXPECT_LT(taken, 20000) << "the queue never filled, so nothing was stuck";
    socket.writeLine("after");
    const auto datagram = daemon.take();
    ASSERT_TRUE(datagram);
    EXPECT_TRUE(datagram->endsWith("after"));
}

TEST(SyslogSocket, APathThatIsTooLongForASocketHarmsNothing)
{
    SyslogSocket socket(std::string(500, 'x'));
    socket.writeLine("one");
    socket.writeLine("two");
    SUCCEED();
}

} // namespace
} // namespace corvandi
