#include "log_ends.h"
#include "support/recording_log.h"
#include "system/log/linux_system_log.h"

#include <QDebug>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

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

using namespace std::chrono_literals;
using testing::LogDaemon;
using testing::Pipe;

class LinuxSystemLogTest : public ::testing::Test {
protected:
    /// What arrives on the error output for one message.
    QByteArray lineFor(const QString& message)
    {
        log.write(message);
        return pipe.takeAll();
    }

    QTemporaryDir folder;
    std::string daemonSocket = folder.filePath(QStringLiteral("log")).toStdString();
    Pipe pipe;
    LinuxSystemLog log{pipe.writer(), daemonSocket};
};

TEST_F(LinuxSystemLogTest, EveryLineGoesToTheDaemonAndToTheErrorOutput)
{
    const LogDaemon daemon(daemonSocket);
    EXPECT_EQ(lineFor(QStringLiteral("no microphone")), "Corvandi: no microphone\n");
    const auto datagram = daemon.take();
    ASSERT_TRUE(datagram);
    EXPECT_TRUE(datagram->endsWith("]: Corvandi: no microphone"));
}

TEST_F(LinuxSystemLogTest, AMessageStaysOnOneLine)
{
    EXPECT_EQ(lineFor(QStringLiteral("one\ntwo\r\nthree\u2028four\u0085five\n")),
              "Corvandi: one two three four five\n");
}

TEST_F(LinuxSystemLogTest, ControlCharactersDoNotReachTheTerminal)
{
    EXPECT_EQ(lineFor(QStringLiteral("a\u001b[31mb") + QChar(0) + QStringLiteral("c")),
              "Corvandi: a [31mb c\n");
}

TEST_F(LinuxSystemLogTest, TextIsWrittenAsUtf8)
{
    EXPECT_EQ(lineFor(QStringLiteral("Größe \U0001F3A4")), QByteArray("Corvandi: Größe \xF0\x9F\x8E\xA4\n"));
}

TEST_F(LinuxSystemLogTest, AnOverlongMessageIsCutBetweenCharacters)
{
    const QByteArray line = lineFor(QString(5000, QChar(0x20AC)));
    EXPECT_LT(line.size(), 2010);
    EXPECT_TRUE(line.endsWith("\xE2\x82\xAC...\n"));
    EXPECT_FALSE(QString::fromUtf8(line).contains(QChar::ReplacementCharacter));
}

TEST_F(LinuxSystemLogTest, AStuckErrorOutputDoesNotKeepLinesFromTheDaemon)
{
    const LogDaemon daemon(daemonSocket);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 5000; ++i) {
        log.write(QStringLiteral("line %1").arg(i));
        ASSERT_TRUE(daemon.take()) << i;
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
}

TEST_F(LinuxSystemLogTest, AStuckDaemonDoesNotKeepLinesFromTheErrorOutput)
{
    const LogDaemon daemon(daemonSocket);
    for (int i = 0; i < 5000; ++i)
        ASSERT_EQ(lineFor(QStringLiteral("line")), "Corvandi: line\n") << i;
}

TEST(LinuxSystemLog, LinesOfSeveralThreadsStayWhole)
{
    constexpr int threadCount = 8;
    constexpr int linesEach = 300;
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("errors")));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    {
        LinuxSystemLog log(file.handle(), folder.filePath(QStringLiteral("log")).toStdString());
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < threadCount; ++thread)
            threads.emplace_back([&log, thread] {
                for (int i = 0; i < linesEach; ++i)
                    log.write(QString(60, QLatin1Char(static_cast<char>('a' + thread))));
            });
    }
    ASSERT_TRUE(file.seek(0));
    const QList<QByteArray> lines = file.readAll().trimmed().split('\n');
    EXPECT_EQ(lines.size(), threadCount * linesEach);
    for (const QByteArray& line : lines)
        ASSERT_EQ(line, "Corvandi: " + QByteArray(60, line.back()));
}

using testing::RecordingLog;

TEST(QtMessages, AreWrittenToTheLog)
{
    RecordingLog log;
    const auto route = routeQtMessages(log);
    qWarning("could not do it");
    qCritical("worse");
    qInfo("by the way");
    EXPECT_EQ(log.lines(), (std::vector{QStringLiteral("Corvandi: Qt warning: could not do it"),
                                        QStringLiteral("Corvandi: Qt error: worse"),
                                        QStringLiteral("Corvandi: Qt information: by the way")}));
}

TEST(QtMessages, DebugOutputIsLeftOut)
{
    RecordingLog log;
    const auto route = routeQtMessages(log);
    qDebug("details");
    EXPECT_TRUE(log.lines().empty());
}

TEST(QtMessages, GoBackToTheFormerHandlerAfterwards)
{
    static int seenByFormer = 0;
    const auto original =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++seenByFormer; });
    RecordingLog log;
    {
        const auto route = routeQtMessages(log);
        qWarning("routed");
    }
    qWarning("not routed");
    EXPECT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(seenByFormer, 1);
    qInstallMessageHandler(original);
}

TEST(QtMessages, ALogThatUsesQtBadlyDoesNotCallItself)
{
    class Chatty : public RecordingLog {
        void writeLine(const QString& line) override
        {
            qWarning("while logging");
            RecordingLog::writeLine(line);
        }
    } log;
    const auto route = routeQtMessages(log);
    qWarning("first");
    qWarning("second");
    EXPECT_EQ(log.lines().size(), 2u);
    EXPECT_FALSE(log.contains(QStringLiteral("while logging")));
}

TEST(QtMessages, MayComeFromAnyThread)
{
    RecordingLog log;
    const auto route = routeQtMessages(log);
    std::jthread([] { qWarning("from elsewhere"); }).join();
    EXPECT_TRUE(log.contains(QStringLiteral("from elsewhere")));
}

} // namespace
} // namespace corvandi
