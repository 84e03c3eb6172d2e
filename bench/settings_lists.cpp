// What the pages with long lists cost on the main thread: opening, searching, scrolling, deleting, adding.
// For each it prints the longest turn of the event loop in milliseconds: the time that passed, and that for
// which the processor worked on it; and the same without the longest one in a thousand, which on a machine
// with other work is rarely the program's own. Paints on the display that it finds:
//
//   cmake --preset release && ninja -C build/release settings_lists
//   desktop/desktop with -- build/release/bench/settings_lists
//
// Exits with 1 when a turn, but for that one in a thousand, works for longer than it may.

#include "core/data/history.h"
#include "core/text/vocab_book.h"
#include "shell/panes/history_pane.h"
#include "shell/panes/vocabulary_pane.h"
#include "system/files/posix_file_system.h"
#include "system/files/serial_work_queue.h"
#include "system/log/linux_system_log.h"
#include "views/settings/history_pane_view.h"
#include "views/settings/vocabulary_pane_view.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include <ctime>

namespace corvandi::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr Milliseconds allowed{10};
constexpr int most = 1000;
constexpr int fewer = 50;
constexpr int wheelSteps = 150;
constexpr int wheelStep = 60;
constexpr int jumps = 40;
constexpr int deletions = 20;
constexpr QSize windowSizes[] = {{660, 460}, {1600, 1100}};
const Locale locale(QStringLiteral("en-US"));
const VocabScope global = vocab_scope::Global{};

/// The event loop counts as idle when it had nothing to do for so long.
constexpr auto quiet = 20ms;

/// The time for which this thread has run; on a busy machine less than what has passed.
Milliseconds processorTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// The longest turn among those that it was told about.
class Turns {
public:
    explicit Turns(const char* name)
        : name_(name)
    {
    }

    /// One turn that does this.
    void take(const std::function<void()>& work)
    {
        const auto start = Clock::now();
        const Milliseconds before = processorTime();
        work();
        used_.push_back(processorTime() - before);
        passed_ = std::max(passed_, Milliseconds(Clock::now() - start));
    }
    /// The turns that follow, until nothing is left to do.
    void takeRest()
    {
        const auto isWork = [this] {
            bool any = false;
            take([&any] { any = QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents); });
            return any;
        };
        for (auto last = Clock::now(); Clock::now() - last < quiet;) {
            if (isWork())
                last = Clock::now();
            else
                QThread::msleep(1);
        }
    }
    [[nodiscard]] bool report()
    {
        std::ranges::sort(used_);
        const Milliseconds usual = used_[used_.size() - 1 - used_.size() / 1000];
        std::printf("%-46s %7zu %9.2f %9.2f %9.2f\n", name_, used_.size(), passed_.count(),
                    used_.back().count(), usual.count());
        std::fflush(stdout);
        return usual <= allowed;
    }

private:
    const char* name_;
    Milliseconds passed_{0};
    std::vector<Milliseconds> used_;
};

bool measure(const char* name, const std::vector<std::function<void()>>& steps)
{
    Turns turns(name);
    for (const auto& step : steps) {
        turns.take(step);
        turns.takeRest();
    }
    return turns.report();
}

bool measure(const char* name, int times, const std::function<void(int)>& step)
{
    Turns turns(name);
    for (int i = 0; i < times; ++i) {
        turns.take([&] { step(i); });
        turns.takeRest();
    }
    return turns.report();
}

/// A store in a folder of its own that goes at the end.
class Files {
public:
    void write(const QString& name, const QByteArray& bytes)
    {
        files_.writeAtomically(folder_.filePath(name), bytes);
    }
    [[nodiscard]] Store open() { return {folder_.path(), files_, queue_, log_, locale}; }

private:
    QTemporaryDir folder_;
    LinuxSystemLog log_;
    PosixFileSystem files_;
    SerialWorkQueue queue_{QStringLiteral("settings bench"), log_};
};

QByteArray historyFile(int count, const QString& text)
{
    std::vector<HistoryEntry> entries;
    for (int i = 0; i < count; ++i)
        entries.push_back({QUuid::createUuid(), text, {static_cast<double>(i)}});
    return History(TextFolding(locale), std::move(entries)).encode();
}

QByteArray vocabularyFile(int count)
{
    VocabBook book;
    for (int i = 0; i < count; ++i) {
        book.addRule(
            {QUuid::createUuid(), QStringLiteral("word %1").arg(i), QStringLiteral("Replacement %1").arg(i)},
            global);
    }
    book.addApp(QStringLiteral("org.mail"), QStringLiteral("Mail"));
    return book.encoded();
}

class NoApplications : public ApplicationDirectory, public Workspace {
public:
    [[nodiscard]] std::vector<RunningApplication> runningApplications() override { return {}; }
    [[nodiscard]] std::vector<InstalledApplication> installedApplications() override { return {}; }
    [[nodiscard]] std::optional<QString> iconOf(const QString&) override { return std::nullopt; }
    [[nodiscard]] std::optional<QString> frontmostApplication() override { return std::nullopt; }
    [[nodiscard]] std::optional<pid_t> frontmostProcess() override { return std::nullopt; }
    [[nodiscard]] std::optional<QString> ownIdentifier() const override { return std::nullopt; }
};

/// A window that shows another page when the one to be measured opens, as that of the settings does.
class Window : public QStackedWidget {
public:
    explicit Window(QSize size)
    {
        auto other = std::make_unique<kit::GroupedForm>();
        other->addSection(QStringLiteral("Header")).addToggle(QStringLiteral("Switch"));
        addWidget(other.release());
        resize(size);
        show();
        Turns("").takeRest();
    }
    void open(QWidget& page)
    {
        addWidget(&page);
        setCurrentWidget(&page);
    }
};

bool scroll(QScrollArea& view)
{
    QScrollBar& bar = *view.verticalScrollBar();
    bool isInTime =
        measure("  scroll by the wheel", wheelSteps, [&bar](int) { bar.setValue(bar.value() + wheelStep); });
    std::mt19937 random(1);
    isInTime &= measure("  drag the scroll bar's handle", jumps, [&](int) {
        bar.setValue(std::uniform_int_distribution(bar.minimum(), bar.maximum())(random));
    });
    bar.setValue(0);
    return isInTime;
}

bool type(QLineEdit& field, const QString& text)
{
    return measure("  type in the search field, then empty it", static_cast<int>(text.size()) + 1,
                   [&](int i) {
                       if (i == text.size())
                           return field.clear();
                       QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, text.mid(i, 1));
                       QCoreApplication::sendEvent(&field, &press);
                   });
}

bool historyOf(const char* name, int count, const QString& text, QSize size)
{
    Files files;
    files.write(QStringLiteral("history.json"), historyFile(count, text));
    Store store = files.open();
    HistoryPane pane(store, [](const QString&) {});
    Window window(size);
    HistoryPaneView* view = nullptr;
    std::printf("%s, %d x %d\n", name, size.width(), size.height());
    bool isInTime = measure("  open", {[&] {
                                view = std::make_unique<HistoryPaneView>(pane).release();
                                window.open(*view);
                            }});
    isInTime &= type(*view->findChild<QLineEdit*>(), QStringLiteral("fox"));
    isInTime &= scroll(*view);
    isInTime &=
        measure("  delete", deletions, [&](int i) { pane.deleteEntry(pane.entries()[size_t(i) / 2]); });
    isInTime &= measure("  change the width", deletions,
                        [&](int i) { window.resize(size.width() + 10 * i, size.height()); });
    return isInTime;
}

bool vocabularyOf(QSize size)
{
    Files files;
    files.write(QStringLiteral("vocab.json"), vocabularyFile(most));
    Store store = files.open();
    NoApplications applications;
    const AppCatalog catalog(applications, applications, locale);
    VocabularyPane pane(store);
    Window window(size);
    VocabularyPaneView* view = nullptr;
    std::printf("vocabulary, 1,000 rules, %d x %d\n", size.width(), size.height());
    bool isInTime = measure("  open", {[&] {
                                view = std::make_unique<VocabularyPaneView>(
                                           pane, catalog, [](QWidget&, const VocabularyPaneView::Picked&) {})
                                           .release();
                                window.open(*view);
                            }});
    isInTime &= scroll(*view);
    isInTime &= measure("  delete", deletions, [&](int i) { pane.deleteRule(pane.rules()[size_t(i) / 2]); });
    isInTime &= measure("  edit", deletions, [&](int i) {
        pane.update(pane.rules()[size_t(i)], QStringLiteral("heard %1").arg(i), QStringLiteral("to"));
    });
    isInTime &= measure("  add", deletions, [&](int i) {
        pane.setNewFrom(QStringLiteral("new %1").arg(i));
        pane.setNewTo(QStringLiteral("newer"));
        pane.add();
    });
    isInTime &= measure("  choose another scope and come back",
                        {[&] { pane.setScope(vocab_scope::App{QStringLiteral("org.mail")}); },
                         [&] { pane.setScope(global); }});
    return isInTime;
}

bool measureAll()
{
    const QString sentence = QStringLiteral("The quick brown fox jumps over the lazy dog. ");
    bool isInTime = true;
    std::printf("%-46s %7s %9s %9s %9s\n", "Longest turn of the main thread, ms", "turns", "passed", "worked",
                "99.9 %");
    for (const QSize size : windowSizes) {
        isInTime &= historyOf("history, 1,000 entries of 45 characters", most, sentence, size);
        isInTime &=
            historyOf("history, 1,000 entries of 1,000 characters", most, sentence.repeated(22), size);
        isInTime &=
            historyOf("history, 50 entries of 20,000 characters", fewer, sentence.repeated(440), size);
        isInTime &= vocabularyOf(size);
    }
    return isInTime;
}

} // namespace
} // namespace corvandi::bench

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return corvandi::bench::measureAll() ? EXIT_SUCCESS : EXIT_FAILURE;
}
