#include "store_fixture.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <functional>
#include <future>
#include <optional>

namespace corvandi {
namespace {

using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::namesIn;

/// Lets no file of this process grow beyond a size.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &before_);
        (void)std::signal(SIGXFSZ, handler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit before_{};
    void (*handler_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

/// Gives the calling process a view of the files of its own, in which `folder` is a disk of one megabyte.
[[nodiscard]] bool mountSmallDisk(const QString& folder)
{
    const uid_t user = geteuid();
    if (unshare(CLONE_NEWNS) != 0) {
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return false;
        std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
    }
    return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, "size=1m,mode=0700") == 0;
}

enum class Outcome { passed, failed, impossible };

/// Runs `test` in a child process with a small disk at `folder`.
template<class Test>
[[nodiscard]] Outcome onSmallDisk(const QString& folder, Test test)
{
    constexpr int failedStatus = 1;
    constexpr int impossibleStatus = 2;
    (void)std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        if (!mountSmallDisk(folder))
            _exit(impossibleStatus);
        test();
        (void)std::fflush(stdout);
        _exit(::testing::Test::HasFailure() ? failedStatus : 0);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return Outcome::failed;
    if (WEXITSTATUS(status) == impossibleStatus)
        return Outcome::impossible;
    return WEXITSTATUS(status) == 0 ? Outcome::passed : Outcome::failed;
}

class FullDiskTest : public StoreOnDisk {
protected:
    /// Changes the history while nothing more fits, then once there is room again.
    void dictateWithoutRoom(const std::function<void()>& makeFull, const std::function<void()>& makeRoom,
                            const QString& reason)
    {
        dictate("before");
        const QByteArray before = contentOf(history);
        PosixFileSystem files;
        SerialWorkQueue queue(QStringLiteral("store test"), log);
        const auto waitForWrites = [&queue] {
            std::promise<void> done;
            queue.async([&done] { done.set_value(); });
            done.get_future().wait();
        };
        Store store(directory, files, queue, log, Locale(QStringLiteral("en-US")));

        makeFull();
        store.addHistory(QString(300'000, QLatin1Char('a')), {0});
        waitForWrites();
        EXPECT_EQ(store.history().size(), 2U);
        EXPECT_EQ(contentOf(history), before);
        EXPECT_THAT(namesIn(directory), ElementsAre(QStringLiteral("history.json")));
        EXPECT_THAT(log.lines(),
                    ElementsAre(QStringLiteral("Corvandi: failed to write history.json: ") + reason));

        makeRoom();
        store.addHistory(QStringLiteral("after"), {0});
        waitForWrites();
        EXPECT_EQ(texts().size(), 3);
        EXPECT_EQ(texts().front(), QStringLiteral("after"));
        EXPECT_EQ(log.lines().size(), 1U);
    }
};

TEST_F(FullDiskTest, AWriteThatDoesNotFitLeavesTheFileAndTheNextOneBringsItUpToDate)
{
    std::optional<FileSizeLimit> limit;
    dictateWithoutRoom([&limit] { limit.emplace(rlim_t{100'000}); }, [&limit] { limit.reset(); },
                       QStringLiteral("File too large"));
}

TEST_F(FullDiskTest, ADiskThatIsReallyFullIsNoDifferent)
{
    const QString disk = folder.path("share");
    const QString filling = disk + QStringLiteral("/filling");
    ASSERT_TRUE(QDir().mkdir(disk));
    const Outcome outcome = onSmallDisk(disk, [&] {
        dictateWithoutRoom([&] { folder.put(filling, QByteArray(900'000, 'x')); },
                           [&] { EXPECT_TRUE(QFile::remove(filling)); },
                           QStringLiteral("No space left on device"));
    });
    if (outcome == Outcome::impossible)
        GTEST_SKIP() << "this machine lets nobody mount a disk for one process";
    EXPECT_EQ(outcome, Outcome::passed);
}

} // namespace
} // namespace corvandi
