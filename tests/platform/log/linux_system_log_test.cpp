#include "platform/linux/log/linux_system_log.h"

#include "log_ends.h"

#include <QFile>
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

} // namespace
} // namespace corvandi
