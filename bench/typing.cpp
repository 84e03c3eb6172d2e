// typing [exactness|speed|blocking ...]: on the virtual desktop that it is started in, types long texts
// into real applications. Without arguments all of it, about six minutes.
//
//   desktop/desktop with -- build/dev/bench/typing
//
// exactness: 2,000 characters of all kinds, ten times each, into a terminal, a GTK field and a Qt field,
//            on three layouts, with CapsLock off and on; how often the text was right.
// speed:     the same text typed by this program and by xdotool with its own delay; from the call until
//            the application has the last character, and how many characters were wrong.
// blocking:  how long the main thread's other work has to wait while a text is inserted.
//
// Exits with 1 when a text is not right, when typing is not five times as fast as xdotool's, or when the
// main thread was kept for longer than 10 ms in one of twenty turns (on a busy machine the scheduler keeps
// it, too).

#include "desktop/typing_desk.h"
#include "desktop/typing_text.h"
#include "session/x11/keys/watched_chord.h"
#include "session/x11/keys/x11_session.h"

#include "support/event_loop.h"

#include <QApplication>
#include <QProcess>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <vector>

namespace {

using namespace corvandi;
using namespace corvandi::testing;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int longText = 2000;
constexpr int repetitions = 10;
constexpr double timesAsFast = 5;
constexpr Milliseconds longestBlock{10};
constexpr std::array targets{TargetKind::terminal, TargetKind::gtkField, TargetKind::qtField};

const char* nameOf(TargetKind kind)
{
    switch (kind) {
    case TargetKind::terminal:
        return "terminal";
    case TargetKind::qtField:
        return "Qt field";
    case TargetKind::gtkField:
        return "GTK field";
    case TargetKind::qtForm:
        return "Qt form";
    }
    return "";
}

/// How many characters must be changed, left out or put in to make the one text of the other.
size_t wrongCharacters(const QString& expected, const QString& held)
{
    const auto from = expected.toUcs4();
    const auto to = held.toUcs4();
    std::vector<size_t> row(static_cast<size_t>(to.size()) + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (const auto character : from) {
        size_t diagonal = row[0]++;
        for (size_t i = 1; i < row.size(); ++i) {
            const bool isSame = to[static_cast<qsizetype>(i - 1)] == character;
            const size_t best = std::min({row[i] + 1, row[i - 1] + 1, diagonal + (isSame ? 0 : 1)});
            diagonal = std::exchange(row[i], best);
        }
    }
    return row.back();
}

Milliseconds percentile(std::vector<Milliseconds> values, size_t percent)
{
    std::sort(values.begin(), values.end());
    return values[(values.size() - 1) * percent / 100];
}

Milliseconds median(std::vector<Milliseconds> values)
{
    return percentile(std::move(values), 50);
}

// --- exactness

int timesRight(TypingDesk& desk, TargetKind kind)
{
    const QString text = mixedText(longText);
    int right = 0;
    for (int i = 0; i < repetitions; ++i) {
        desk.open(kind);
        right += desk.insert(text) && desk.waitForText(text) ? 1 : 0;
    }
    return right;
}

bool measureExactness()
{
    std::printf(
        "%d characters, %d times: right\n\n            us      us+Caps  de      de+Caps  fr      fr+Caps\n",
        longText, repetitions);
    bool isExact = true;
    TypingDesk desk;
    for (const TargetKind kind : targets) {
        std::printf("%-10s", nameOf(kind));
        for (const char* layout : {"us", "de", "fr"}) {
            for (const uint8_t locked : {x11_mask::none, x11_mask::lock}) {
                isExact = setLayout(QLatin1String(layout)) && isExact;
                desk.setLocks(locked);
                const int right = timesRight(desk, kind);
                isExact = isExact && right == repetitions;
                std::printf("  %2d/%d ", right, repetitions);
                std::fflush(stdout);
            }
        }
        std::printf("\n");
    }
    desk.setLocks(x11_mask::none);
    return setLayout(QStringLiteral("us")) && isExact;
}

// --- speed

struct Performance {
    Milliseconds time;
    size_t wrong;
};

/// Types with `type` into a new application, until that has stopped to change.
template<class Type>
Performance performanceOf(TypingDesk& desk, TargetKind kind, const QString& text, Type type)
{
    desk.open(kind);
    const auto start = Clock::now();
    type();
    (void)desk.waitForText(text);
    const auto changes = desk.target().changes();
    const auto end = changes.empty() ? Clock::now() : changes.back().at;
    return {end - start, wrongCharacters(text, desk.text())};
}

Performance ofOurs(TypingDesk& desk, TargetKind kind, const QString& text)
{
    std::vector<Milliseconds> times;
    size_t wrong = 0;
    for (int i = 0; i < repetitions; ++i) {
        const Performance one = performanceOf(desk, kind, text, [&] { (void)desk.insert(text); });
        times.push_back(one.time);
        wrong = std::max(wrong, one.wrong);
    }
    return {median(times), wrong};
}

Performance ofXdotool(TypingDesk& desk, TargetKind kind, const QString& text)
{
    return performanceOf(desk, kind, text, [&] {
        QProcess xdotool;
        xdotool.start(QStringLiteral("xdotool"),
                      {QStringLiteral("type"), QStringLiteral("--file"), QStringLiteral("-")});
        xdotool.write(text.toUtf8());
        xdotool.closeWriteChannel();
        xdotool.waitForFinished(-1);
    });
}

bool measureSpeed()
{
    std::printf("\n%d characters: from the call to the last character (ours: median of %d, worst errors)\n\n"
                "            ours (ms)  wrong   xdotool (ms)  wrong   times as fast\n",
                longText, repetitions);
    bool isFast = true;
    TypingDesk desk;
    for (const TargetKind kind : targets) {
        const QString text = mixedText(longText);
        const Performance ours = ofOurs(desk, kind, text);
        const Performance theirs = ofXdotool(desk, kind, text);
        const double ratio = theirs.time / ours.time;
        isFast = isFast && ratio >= timesAsFast && ours.wrong == 0;
        std::printf("%-10s  %9.0f  %5zu   %12.0f  %5zu   %13.1f\n", nameOf(kind), ours.time.count(),
                    ours.wrong, theirs.time.count(), theirs.wrong, ratio);
        std::fflush(stdout);
    }
    return isFast;
}

// --- blocking

/// Notes how long the work takes that it runs.
class TimedQueue : public QtMainQueue {
public:
    [[nodiscard]] std::unique_ptr<Timer> after(Duration delay, std::function<void()> work) override
    {
        return QtMainQueue::after(delay, [this, work = std::move(work)] { run(work); });
    }
    void run(const std::function<void()>& work)
    {
        const auto start = Clock::now();
        work();
        turns.emplace_back(Clock::now() - start);
    }

    std::vector<Milliseconds> turns;
};

struct TimedInsertion {
    std::vector<Milliseconds> turns;
    Milliseconds whole;
};

QCoro::Task<> store(QCoro::Task<Insertion> task, std::shared_ptr<std::optional<bool>> result)
{
    const Insertion insertion = co_await task;
    *result = insertion.outcome == Insertion::Outcome::inserted;
}

TimedInsertion insertionOf(TypingDesk& desk, const QString& text)
{
    desk.open(TargetKind::terminal);
    TimedQueue queue;
    TextInjector injector(desk.keyboard(), desk.pasteboard(), queue);
    const auto result = std::make_shared<std::optional<bool>>();
    const auto start = Clock::now();
    queue.run([&] {
        const auto task = store(injector.insert(text, InsertionMethod::type, [] { return true; }), result);
    });
    (void)waitUntil([&] { return result->has_value(); }, 60s);
    return {queue.turns, Clock::now() - start};
}

bool measureBlocking()
{
    std::printf("\ninserting into a terminal, %d times each, in ms\n\n"
                "             turns of the main thread\n"
                "characters   median     95 %%  longest   until all is posted (median)\n",
                repetitions);
    bool isShort = true;
    for (const int count : {20, 200, 2000, 20000}) {
        std::vector<Milliseconds> turns;
        std::vector<Milliseconds> wholes;
        for (int i = 0; i < repetitions; ++i) {
            // A new keyboard: the extra characters are put onto it in each of the runs.
            TypingDesk desk;
            const TimedInsertion insertion = insertionOf(desk, mixedText(count));
            turns.insert(turns.end(), insertion.turns.begin(), insertion.turns.end());
            wholes.push_back(insertion.whole);
        }
        std::printf("%10d  %7.2f  %7.2f  %7.2f   %19.1f\n", count, median(turns).count(),
                    percentile(turns, 95).count(), percentile(turns, 100).count(), median(wholes).count());
        std::fflush(stdout);
        isShort = isShort && percentile(turns, 95) <= longestBlock;
    }
    return isShort;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const QStringList wanted = application.arguments().mid(1);
    const auto isWanted = [&](const char* name) {
        return wanted.isEmpty() || wanted.contains(QLatin1String(name));
    };
    try {
        bool isGood = !isWanted("exactness") || measureExactness();
        isGood = (!isWanted("speed") || measureSpeed()) && isGood;
        isGood = (!isWanted("blocking") || measureBlocking()) && isGood;
        return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "measuring failed: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
