// What the history costs on the main thread: adding an entry to a full history of long texts, searching
// it, and starting with a very large file. Needs no display:
//
//   cmake --preset release && ninja -C build/release history_commit && build/release/bench/history_commit
//
// Prints a table of milliseconds: the time that passed, and that for which the processor worked on it.
// Exits with 1 when adding an entry takes more work than it may.

#include "core/data/history.h"
#include "core/data/store.h"
#include "system/files/posix_file_system.h"
#include "system/files/serial_work_queue.h"
#include "system/log/linux_system_log.h"

#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <future>
#include <vector>

#include <ctime>

namespace {

using namespace corvandi;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int repetitions = 200;
constexpr int starts = 5;
constexpr qsizetype charactersEach = 1000;
constexpr size_t veryManyEntries = 100'000;
constexpr Milliseconds allowedForAdding{5};

const Locale locale(QStringLiteral("en-US"));

const QString latin = QStringLiteral("The quick brown fox said \"so what\". ");
const QString german = QString::fromUtf8("Größere Bären übten früh für das Frühstück. ");
const QString japanese = QString::fromUtf8("速い茶色の狐はのろまな犬を飛び越えました。");

/// A text of the usual length in the language of `sentence`.
QString longText(const QString& sentence)
{
    return sentence.repeated(charactersEach / sentence.size() + 1).left(charactersEach);
}

History historyOf(size_t count, const QString& text)
{
    std::vector<HistoryEntry> entries;
    for (size_t i = 0; i < count; ++i)
        entries.push_back({QUuid::createUuid(), text, {774'360'000.123 + static_cast<double>(i)}});
    return History(TextFolding(locale), std::move(entries));
}

/// The time for which this thread has run; on a busy machine less than what has passed.
Milliseconds processorTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

Milliseconds median(std::vector<Milliseconds>& times)
{
    std::ranges::sort(times);
    return times[times.size() / 2];
}

/// Repeats `work`, each time after `prepare`, which is not measured, and prints the times. Returns the
/// median of the processor's.
Milliseconds measure(
    const char* name, int times, const std::function<void()>& work,
    const std::function<void()>& prepare = [] {})
{
    std::vector<Milliseconds> passed;
    std::vector<Milliseconds> used;
    for (int i = 0; i < times; ++i) {
        prepare();
        const auto start = Clock::now();
        const Milliseconds usedBefore = processorTime();
        work();
        used.push_back(processorTime() - usedBefore);
        passed.emplace_back(Clock::now() - start);
    }
    const Milliseconds usedMedian = median(used);
    const Milliseconds passedMedian = median(passed);
    std::printf("%-46s %6d %9.2f %9.2f %11.2f %9.2f\n", name, times, passedMedian.count(),
                passed.back().count(), usedMedian.count(), used.back().count());
    return usedMedian;
}

/// A store in a folder of its own that goes at the end.
class Bench {
public:
    explicit Bench(History history)
    {
        files_.writeAtomically(folder_.filePath(QStringLiteral("history.json")), history.encode());
    }
    [[nodiscard]] Store open() { return {folder_.path(), files_, queue_, log_, locale}; }
    void waitForWrites()
    {
        std::promise<void> done;
        queue_.async([&done] { done.set_value(); });
        done.get_future().wait();
    }

private:
    QTemporaryDir folder_;
    LinuxSystemLog log_;
    PosixFileSystem files_;
    SerialWorkQueue queue_{QStringLiteral("history bench"), log_};
};

bool addsInTime(const char* name, const QString& sentence)
{
    Bench bench(historyOf(Store::historyLimit, longText(sentence)));
    Store store = bench.open();
    const QString text = longText(sentence);
    const auto add = [&] { store.addHistory(text, {774'360'000.123}); };
    return measure(name, repetitions, add, [&bench] { bench.waitForWrites(); }) <= allowedForAdding;
}

void search(const char* name, const QString& sentence, const QString& query)
{
    Bench bench(historyOf(Store::historyLimit, longText(sentence)));
    const Store store = bench.open();
    measure(name, repetitions, [&] { (void)store.listHistory(query); });
}

void start(const char* name, size_t count, const QString& text)
{
    Bench bench(historyOf(count, text));
    measure(name, starts, [&] { (void)bench.open(); });
}

} // namespace

int main()
{
    std::printf("%-46s %6s %9s %9s %11s %9s\n", "1000 entries of 1000 characters; ms", "times", "median",
                "maximum", "cpu: median", "maximum");
    bool isInTime = addsInTime("add an entry, English", latin);
    isInTime &= addsInTime("add an entry, German", german);
    isInTime &= addsInTime("add an entry, Japanese", japanese);
    search("search for what no entry has, English", latin, QStringLiteral("Zebra"));
    search("search for what no entry has, German", german, QStringLiteral("Zebra"));
    search("search for what no entry has, Japanese", japanese, QStringLiteral("Zebra"));
    search("search for what every entry has, English", latin, QStringLiteral("FOX"));
    start("start", Store::historyLimit, longText(latin));
    start("start with 100000 entries of 100 characters", veryManyEntries, longText(latin).left(100));
    start("start with 100000 entries", veryManyEntries, longText(latin));
    return isInTime ? 0 : 1;
}
