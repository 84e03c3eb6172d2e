#include "store_fixture.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <limits>
#include <random>
#include <semaphore>
#include <thread>

namespace corvandi {
namespace {

using std::chrono::steady_clock;
using testing::namesIn;

/// After so many dictations the history begins anew.
constexpr int commits = 500;
/// A program is killed in one of its first writes, and the next one goes on from there.
constexpr int mostWritesUntilKill = 30;
constexpr std::chrono::seconds testTime{20};
/// Longer than a write takes here, so that a kill falls into it or between two.
constexpr std::chrono::microseconds longestDelay{4000};
constexpr int fewestKillsInWrites = 20;

constexpr char begun = 'b';
constexpr char ended = 'e';

/// The text of the nth dictation.
QString textOf(int n)
{
    return QString::number(n) + QString(2000, QChar(u'a' + n % 26));
}

struct Pipe {
    Pipe()
    {
        if (pipe(ends.data()) != 0)
            throw std::runtime_error("no pipe");
    }
    ~Pipe()
    {
        close(ends[0]);
        close(ends[1]);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    [[nodiscard]] int reader() const { return ends[0]; }
    [[nodiscard]] int writer() const { return ends[1]; }
    void closeWriter()
    {
        close(ends[1]);
        ends[1] = -1;
    }

    std::array<int, 2> ends{};
};

/// Says when a write begins and when it has ended.
class ReportingFileSystem : public PosixFileSystem {
public:
    explicit ReportingFileSystem(int reports)
        : reports_(reports)
    {
    }
    void writeAtomically(const QString& path, const QByteArray& content) override
    {
        report(begun);
        PosixFileSystem::writeAtomically(path, content);
        report(ended);
    }

private:
    void report(char event) const { EXPECT_EQ(write(reports_, &event, 1), 1); }

    int reports_;
};

/// The program that gets killed: goes on dictating, at most two writes ahead of the disk.
[[noreturn]] void dictateUntilKilled(const QString& directory, int reports)
{
    testing::RecordingLog log;
    ReportingFileSystem files(reports);
    SerialWorkQueue queue(QStringLiteral("store test"), log);
    Store store(directory, files, queue, log, Locale(QStringLiteral("en-US")));
    std::counting_semaphore<> room(2);
    for (auto n = static_cast<int>(store.history().size()) + 1; true; ++n) {
        room.acquire();
        store.addHistory(textOf(n), {static_cast<double>(n)});
        queue.async([&room] { room.release(); });
    }
}

struct Reports {
    int begun = 0;
    int ended = 0;
};

/// Reads reports until there are so many begun writes, or no more to come.
void readUntil(int begunWrites, const Pipe& pipe, Reports& reports)
{
    char event = 0;
    while (reports.begun < begunWrites && read(pipe.reader(), &event, 1) == 1)
        ++(event == begun ? reports.begun : reports.ended);
}

class KilledProgramTest : public StoreOnDisk {
protected:
    /// Kills a program in or shortly after the write with this number; says what it had done by then.
    Reports killAt(int write, std::chrono::microseconds delay)
    {
        Pipe pipe;
        const pid_t child = fork();
        if (child == 0)
            dictateUntilKilled(directory, pipe.writer());
        pipe.closeWriter();
        Reports reports;
        readUntil(write, pipe, reports);
        std::this_thread::sleep_for(delay);
        EXPECT_EQ(kill(child, SIGKILL), 0);
        EXPECT_EQ(waitpid(child, nullptr, 0), child);
        readUntil(std::numeric_limits<int>::max(), pipe, reports);
        return reports;
    }

    /// What a program has left that had found `before` entries. Returns their number now.
    int expectWhole(int before, const Reports& reports)
    {
        const StoreRun run(directory, log);
        const auto count = static_cast<int>(run.store.history().size());
        EXPECT_GE(count, before + reports.ended);
        EXPECT_LE(count, before + reports.begun);
        for (int i = 0; i < count; ++i) {
            const HistoryEntry& entry = run.store.history()[static_cast<size_t>(i)];
            EXPECT_EQ(entry.text, textOf(count - i));
            EXPECT_EQ(entry.date, Date{static_cast<double>(count - i)});
        }
        EXPECT_TRUE(log.lines().empty());
        return count;
    }

    [[nodiscard]] int leftovers() const
    {
        return static_cast<int>(namesIn(directory).filter(QStringLiteral(".corvandi-")).size());
    }
};

TEST_F(KilledProgramTest, WhatWasWrittenIsWholeWheneverTheProgramIsKilled)
{
    std::mt19937 random(std::random_device{}());
    std::uniform_int_distribution<int> anyWrite(0, mostWritesUntilKill);
    std::uniform_int_distribution<int> anyDelay(0, static_cast<int>(longestDelay.count()));
    int kills = 0;
    int killsInWrites = 0;
    int killsWithLeftover = 0;
    int count = 0;
    const auto end = steady_clock::now() + testTime;
    while ((steady_clock::now() < end || killsInWrites < fewestKillsInWrites) && !HasFailure()) {
        const Reports reports = killAt(anyWrite(random), std::chrono::microseconds(anyDelay(random)));
        ++kills;
        killsInWrites += reports.begun > reports.ended ? 1 : 0;
        // The next program's first write removes it, so there is never more than one.
        EXPECT_LE(leftovers(), 1);
        killsWithLeftover += leftovers();
        count = expectWhole(count, reports);
        if (count >= commits) {
            dictate("after");
            EXPECT_EQ(namesIn(directory), QStringList{QStringLiteral("history.json")});
            EXPECT_TRUE(QDir(directory).removeRecursively());
            count = 0;
        }
    }
    std::printf("%d kills, %d of them in a write, %d left a replacement behind\n", kills, killsInWrites,
                killsWithLeftover);
    EXPECT_GT(killsWithLeftover, 0);
}

} // namespace
} // namespace corvandi
