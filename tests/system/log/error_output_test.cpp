#include "system/log/error_output.h"

#include "log_ends.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using testing::Pipe;

/// More than any pipe takes.
constexpr int manyLines = 20000;

/// Fills `output` far beyond what it takes and returns how long that took.
std::chrono::nanoseconds flood(ErrorOutput& output)
{
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < manyLines; ++i)
        output.writeLine("line " + QByteArray::number(i));
    return std::chrono::steady_clock::now() - start;
}

TEST(ErrorOutput, WritesOneLinePerCall)
{
    const Pipe pipe;
    ErrorOutput output(pipe.writer());
    output.writeLine("one");
    output.writeLine("two");
    EXPECT_EQ(pipe.takeAll(), "one\ntwo\n");
}

TEST(ErrorOutput, AFullPipeThatNobodyReadsStopsNobody)
{
    const Pipe pipe;
    ErrorOutput output(pipe.writer());
    EXPECT_LT(flood(output), 5s);
    const QByteArray taken = pipe.takeAll();
    EXPECT_TRUE(taken.startsWith("line 0\nline 1\n"));
    EXPECT_TRUE(taken.endsWith('\n')) << "only whole lines";
}

TEST(ErrorOutput, SaysHowManyLinesWereLostAsSoonAsThereIsRoom)
{
    const Pipe pipe;
    ErrorOutput output(pipe.writer());
    (void)flood(output);
    const auto written = pipe.takeAll().count('\n');
    output.writeLine("again");
    EXPECT_EQ(pipe.takeAll(), "Corvandi: lines of the log lost here: " +
                                  QByteArray::number(manyLines - written) + "\nagain\n");
    output.writeLine("and again");
    EXPECT_EQ(pipe.takeAll(), "and again\n");
}

TEST(ErrorOutput, LeavesTheDescriptorOfOthersBlocking)
{
    const Pipe pipe;
    const int before = fcntl(pipe.writer(), F_GETFL);
    ErrorOutput output(pipe.writer());
    output.writeLine("one");
    EXPECT_EQ(fcntl(pipe.writer(), F_GETFL), before);
    EXPECT_EQ(before & O_NONBLOCK, 0);
}

TEST(ErrorOutput, AReaderThatHasGoneDoesNotEndTheProgram)
{
    Pipe pipe;
    ErrorOutput output(pipe.writer());
    pipe.closeReader();
    ASSERT_EQ(signal(SIGPIPE, SIG_DFL), SIG_DFL)
        << "the signal must be deadly for this test to mean anything";
    output.writeLine("one");
    output.writeLine("two");
    sigset_t pending{};
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

TEST(ErrorOutput, AReaderThatWasGoneBeforeDoesNotEndTheProgram)
{
    Pipe pipe;
    pipe.closeReader();
    ErrorOutput output(pipe.writer());
    ASSERT_EQ(signal(SIGPIPE, SIG_DFL), SIG_DFL);
    output.writeLine("one");
    SUCCEED();
}

TEST(ErrorOutput, ASignalThatWasPendingBeforeIsKept)
{
    sigset_t brokenPipe{};
    sigset_t former{};
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &brokenPipe, &former);
    raise(SIGPIPE);

    const Pipe pipe;
    ErrorOutput(pipe.writer()).writeLine("one");

    sigset_t pending{};
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 1);
    const timespec atOnce{};
    EXPECT_EQ(sigtimedwait(&brokenPipe, nullptr, &atOnce), SIGPIPE);
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

TEST(ErrorOutput, AStuckSocketStopsNobody)
{
    std::array<int, 2> ends{-1, -1};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
    const FileDescriptor ours(ends[0]);
    const FileDescriptor theirs(ends[1]);
    ErrorOutput output(ours.get());
    EXPECT_LT(flood(output), 5s);
    std::array<char, 7> first{};
    ASSERT_EQ(read(theirs.get(), first.data(), first.size()), 7);
    EXPECT_EQ(QByteArray(first.data(), 7), "line 0\n");
    EXPECT_EQ(fcntl(ours.get(), F_GETFL) & O_NONBLOCK, 0);
}

TEST(ErrorOutput, WritesIntoAFileWhereOthersWriteToo)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("errors")));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    ErrorOutput output(file.handle());
    output.writeLine("ours");
    ASSERT_EQ(write(file.handle(), "theirs\n", 7), 7);
    output.writeLine("ours again");
    ASSERT_TRUE(file.seek(0));
    EXPECT_EQ(file.readAll(), "ours\ntheirs\nours again\n");
}

TEST(ErrorOutput, AClosedDescriptorTakesNothingAndHarmsNothing)
{
    ErrorOutput output(-1);
    EXPECT_LT(flood(output), 5s);
}

TEST(ErrorOutput, AFullDiskHarmsNothing)
{
    const FileDescriptor full(open("/dev/full", O_WRONLY | O_CLOEXEC));
    ASSERT_TRUE(full.isOpen());
    ErrorOutput output(full.get());
    EXPECT_LT(flood(output), 5s);
}

} // namespace
} // namespace corvandi
