#include "system/process/single_instance.h"

#include "support/event_loop.h"
#include "support/recording_log.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFile>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>

using namespace corvandi;
using namespace corvandi::testing;
using namespace std::chrono_literals;

namespace {

class Instance {
public:
    explicit Instance(const QString& folder) { process_.start(QStringLiteral(INSTANCE_PEER), {folder}); }
    ~Instance() { end(); }
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    [[nodiscard]] bool says(const QByteArray& word)
    {
        return waitUntil([&] { return output().contains(word + '\n'); });
    }
    [[nodiscard]] QByteArray output()
    {
        output_ += process_.readAllStandardOutput();
        return output_;
    }
    [[nodiscard]] QByteArray errors() { return process_.readAllStandardError(); }
    void send(int signal) { kill(static_cast<pid_t>(process_.processId()), signal); }
    void end()
    {
        process_.kill();
        process_.waitForFinished();
    }

private:
    QProcess process_;
    QByteArray output_;
};

class SingleInstanceTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
};

} // namespace

TEST(FolderClaim, IsGrantedToOneAtATime)
{
    QTemporaryDir home;
    const QString folder = home.path() + QStringLiteral("/data/Corvandi");
    RecordingLog log;
    std::optional<FolderClaim> first(std::in_place, log, folder);
    EXPECT_TRUE(first->isGranted());
    EXPECT_FALSE(FolderClaim(log, folder).isGranted());
    first.reset();
    EXPECT_TRUE(FolderClaim(log, folder).isGranted());
    EXPECT_TRUE(log.lines().empty());
}

TEST(FolderClaim, MakesAFolderThatNobodyElseMayEnter)
{
    QTemporaryDir home;
    const QString folder = home.path() + QStringLiteral("/data/Corvandi");
    RecordingLog log;
    const FolderClaim claim(log, folder);
    EXPECT_EQ(QFile::permissions(folder) & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser),
              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

TEST(FolderClaim, IsGrantedWhereNoLockCanBeKept)
{
    RecordingLog log;
    EXPECT_TRUE(FolderClaim(log, QStringLiteral("/proc/Corvandi")).isGranted());
    EXPECT_TRUE(
        log.contains(QStringLiteral("the data folder can't be locked, so other sessions go unnoticed")));
}

TEST_F(SingleInstanceTest, TheFirstIsToldOfEachLaterStart)
{
    Instance first(folder.path());
    ASSERT_TRUE(first.says("first"));
    for (int starts = 1; starts <= 3; ++starts) {
        Instance second(folder.path());
        EXPECT_TRUE(second.says("second"));
        EXPECT_TRUE(waitUntil([&] { return first.output().count("activated\n") == starts; }));
    }
}

TEST_F(SingleInstanceTest, TheSecondEndsWithoutDelay)
{
    Instance first(folder.path());
    ASSERT_TRUE(first.says("first"));
    RecordingLog log;
    QElapsedTimer clock;
    clock.start();
    const SingleInstance second(
        log, [] {}, folder.path());
    EXPECT_EQ(second.role(), InstanceRole::second);
    EXPECT_LT(clock.elapsed(), 900);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(SingleInstanceTest, TheLockOfAKilledProcessIsTakenOver)
{
    {
        Instance killed(folder.path());
        ASSERT_TRUE(killed.says("first"));
    }
    ASSERT_TRUE(QFile::exists(folder.filePath(QStringLiteral("corvandi.lock"))));
    Instance next(folder.path());
    ASSERT_TRUE(next.says("first"));
    Instance second(folder.path());
    EXPECT_TRUE(second.says("second"));
    EXPECT_TRUE(next.says("activated"));
}

TEST_F(SingleInstanceTest, AHungFirstInstanceKeepsTheSecondWaitingForOneSecondOnly)
{
    Instance first(folder.path());
    ASSERT_TRUE(first.says("first"));
    first.send(SIGSTOP);
    RecordingLog log;
    QElapsedTimer clock;
    clock.start();
    const SingleInstance second(
        log, [] {}, folder.path());
    EXPECT_EQ(second.role(), InstanceRole::second);
    EXPECT_GE(clock.elapsed(), 950);
    EXPECT_LT(clock.elapsed(), 4000);
    EXPECT_TRUE(log.contains(QStringLiteral("does not answer")));
}

TEST_F(SingleInstanceTest, ManyHungCallersDontKeepTheSecondWaitingForLonger)
{
    Instance first(folder.path());
    ASSERT_TRUE(first.says("first"));
    first.send(SIGSTOP);
    // More than the server lets wait for their turn.
    std::vector<std::unique_ptr<QLocalSocket>> callers;
    for (int i = 0; i < 80; ++i) {
        callers.push_back(std::make_unique<QLocalSocket>());
        callers.back()->connectToServer(folder.filePath(QStringLiteral("corvandi.socket")));
    }
    RecordingLog log;
    QElapsedTimer clock;
    clock.start();
    const SingleInstance second(
        log, [] {}, folder.path());
    EXPECT_EQ(second.role(), InstanceRole::second);
    EXPECT_LT(clock.elapsed(), 4000);
}

TEST_F(SingleInstanceTest, AnInstanceThatEndsWhileItIsToldMakesTheNextOneFirst)
{
    auto first = std::make_unique<Instance>(folder.path());
    ASSERT_TRUE(first->says("first"));
    first->send(SIGSTOP);
    Instance next(folder.path());
    runFor(200ms);
    EXPECT_EQ(next.output(), QByteArray());
    first.reset();
    EXPECT_TRUE(next.says("first"));
}

TEST_F(SingleInstanceTest, OfManyThatStartAtOnceOneIsFirst)
{
    std::vector<std::unique_ptr<Instance>> instances;
    for (int i = 0; i < 6; ++i)
        instances.push_back(std::make_unique<Instance>(folder.path()));
    int firsts = 0;
    for (const auto& instance : instances) {
        ASSERT_TRUE(waitUntil([&] { return !instance->output().isEmpty(); }));
        firsts += instance->output().startsWith("first") ? 1 : 0;
    }
    EXPECT_EQ(firsts, 1);
}

TEST_F(SingleInstanceTest, WhoeverSendsSomethingElseActivatesNothing)
{
    Instance first(folder.path());
    ASSERT_TRUE(first.says("first"));
    QLocalSocket stranger;
    stranger.connectToServer(folder.filePath(QStringLiteral("corvandi.socket")));
    stranger.write("hello\n");
    EXPECT_TRUE(waitUntil([&] { return stranger.state() == QLocalSocket::UnconnectedState; }));
    EXPECT_FALSE(first.output().contains("activated"));
}

TEST_F(SingleInstanceTest, WithoutAPlaceForTheLockItIsTheFirst)
{
    RecordingLog log;
    const SingleInstance nowhere(
        log, [] {}, std::nullopt);
    EXPECT_EQ(nowhere.role(), InstanceRole::first);
    const SingleInstance missing(
        log, [] {}, folder.filePath(QStringLiteral("missing")));
    EXPECT_EQ(missing.role(), InstanceRole::first);
    EXPECT_TRUE(log.contains(QStringLiteral("no private folder")));
    EXPECT_TRUE(log.contains(QStringLiteral("can't be written")));
}

TEST_F(SingleInstanceTest, APathThatIsTooLongForASocketIsLogged)
{
    const QString deep = folder.filePath(QString(120, QLatin1Char('d')));
    ASSERT_TRUE(QDir().mkpath(deep));
    RecordingLog log;
    const SingleInstance instance(
        log, [] {}, deep);
    EXPECT_EQ(instance.role(), InstanceRole::first);
    EXPECT_TRUE(log.contains(QStringLiteral("can't reach this one")));
}
