#include "store_fixture.h"

#include "core/data/history.h"
#include "support/history_bytes.h"

#include <chrono>
#include <cstdio>

namespace corvandi {
namespace {

using testing::historyBytes;

using std::chrono::steady_clock;

class LargeFilesTest : public StoreOnDisk {
protected:
    void fill(size_t entries, qsizetype charactersEach)
    {
        std::vector<HistoryEntry> written;
        for (size_t i = 0; i < entries; ++i)
            written.push_back({QUuid::createUuid(), QString(charactersEach, QLatin1Char('a')), {0.5}});
        PosixFileSystem files;
        files.createDirectory(directory);
        files.writeAtomically(history, historyBytes(written));
    }
    void expectStart(size_t entries)
    {
        const auto begin = steady_clock::now();
        StoreRun run(directory, log);
        const std::chrono::duration<double, std::milli> time = steady_clock::now() - begin;
        std::printf("%zu entries, %lld bytes: start in %.0f ms\n", entries,
                    static_cast<long long>(QFile(history).size()), time.count());
        EXPECT_EQ(run.store.history().size(), entries);
        run.store.addHistory(QStringLiteral("new"), {0});
        EXPECT_EQ(run.store.history().size(), Store::historyLimit);
    }
};

TEST_F(LargeFilesTest, AHundredThousandEntriesAreReadAndCutWithTheNextOne)
{
    fill(100'000, 50);
    expectStart(100'000);
    EXPECT_EQ(texts().size(), 1000);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(LargeFilesTest, AHundredMegabytesAreReadAndCutWithTheNextEntry)
{
    fill(2'000, 50'000);
    ASSERT_GE(QFile(history).size(), 100'000'000);
    expectStart(2'000);
    EXPECT_EQ(texts().size(), 1000);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(LargeFilesTest, AHundredMegabytesOfNothingUsefulAreSetAside)
{
    PosixFileSystem files;
    files.createDirectory(directory);
    files.writeAtomically(history, QByteArray(100'000'000, '['));
    EXPECT_TRUE(texts().isEmpty());
    EXPECT_EQ(QFile(aside).size(), 100'000'000);
    EXPECT_TRUE(log.contains(QStringLiteral("nested too deeply")));
}

} // namespace
} // namespace corvandi
