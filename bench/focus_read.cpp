// How long it takes to ask for the focused element of the active window, and what the tracking costs
// while nothing happens. Run it inside a desktop with an application whose field has the focus:
//
//   desktop/desktop with comp=none -- sh -c 'zenity --entry & sleep 2; build/dev/bench/focus_read'

#include "session/x11/windows/window_reader.h"
#include "system/accessibility/at_spi_focus.h"
#include "system/log/linux_system_log.h"
#include "system/process/qt_main_queue.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include <sys/resource.h>

namespace {

using namespace corvandi;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

void runFor(milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

double microseconds(Clock::duration time)
{
    return std::chrono::duration<double, std::micro>(time).count();
}

/// Repeats `read` every few milliseconds, so that each one meets a worker that is updating what it knows.
template<class Read>
void measure(const char* name, Read read)
{
    constexpr int reads = 2000;
    std::vector<Clock::duration> times;
    for (int i = 0; i < reads; ++i) {
        const auto start = Clock::now();
        (void)read();
        times.push_back(Clock::now() - start);
        runFor(milliseconds(2));
    }
    std::ranges::sort(times);
    std::printf("%s, %d times: median %.0f us, 99 %% %.0f us, worst %.0f us\n", name, reads,
                microseconds(times[times.size() / 2]), microseconds(times[times.size() * 99 / 100]),
                microseconds(times.back()));
}

/// What a delivery waits for the focus.
void measureRefreshes(AtSpiFocus& focus)
{
    measure("a refresh, from the question to its end", [&focus] {
        QEventLoop loop;
        const auto refresh = focus.refresh([&loop] { loop.quit(); });
        return loop.exec();
    });
}

struct Usage {
    long switches = 0;
    double cpuMilliseconds = 0;
};

Usage usageSoFar()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto inMilliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return {usage.ru_nvcsw + usage.ru_nivcsw,
            inMilliseconds(usage.ru_utime) + inMilliseconds(usage.ru_stime)};
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    LinuxSystemLog log;
    const XcbConnection x;
    const FrontWindowReader frontWindow(x);
    const auto active = [&frontWindow] {
        const auto window = frontWindow.read();
        return window ? window->process : std::nullopt;
    };
    QtMainQueue queue;
    AtSpiFocus focus([&active] { return active(); }, queue, log);
    runFor(milliseconds(1000));
    const auto element = focus.focusedElement();
    std::printf("focused element: %s\n", element ? qPrintable(element->role.value_or(QString())) : "unknown");

    measure("the active window's process alone", [&] { return active(); });
    AtSpiFocus fixedFocus([process = active()] { return process; }, queue, log);
    runFor(milliseconds(1000));
    measure("the focused element of a known process", [&] { return fixedFocus.focusedElement(); });
    measure("the focused element of the active window", [&] { return focus.focusedElement(); });

    measureRefreshes(focus);

    runFor(milliseconds(500));
    constexpr milliseconds idle{5000};
    const Usage before = usageSoFar();
    runFor(idle);
    const Usage after = usageSoFar();
    std::printf("idle for %lld ms: %ld context switches, %.1f ms of processor time\n",
                static_cast<long long>(idle.count()), after.switches - before.switches,
                after.cpuMilliseconds - before.cpuMilliseconds);
    return 0;
}
