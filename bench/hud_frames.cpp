// Measures what the HUD costs: frames per second and processor time while it records as somebody speaks,
// while it processes, while a notice stands, and while it is hidden. Paints on the display it finds.

#include "core/hud/hud_controller.h"
#include "session/x11/panel/x11_hud_panel.h"
#include "system/process/qt_main_queue.h"
#include "views/hud/hud_view.h"

#include <QApplication>
#include <QEvent>
#include <QTextStream>
#include <QTimer>

#include <sys/resource.h>

#include <chrono>
#include <cmath>
#include <memory>

namespace corvandi::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto measuredTime = 10s;
/// For the changes of state to be over.
constexpr auto settlingTime = 1s;
/// The microphone delivers blocks of 2048 frames at 48 kHz.
constexpr auto levelInterval = 43ms;

/// Counts the pictures that a window draws.
class FrameCounter : public QObject {
public:
    explicit FrameCounter(QObject& window) { window.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;
};

/// Lets the controller use a panel that the benchmark can watch.
class WatchedPanels : public HUDPanelFactory {
public:
    [[nodiscard]] std::unique_ptr<HUDPanel> create(HUDModel& model) override
    {
        auto view = std::make_unique<HUDView>(model);
        frames = std::make_unique<FrameCounter>(*view);
        auto panel = std::make_unique<X11HUDPanel>(std::move(view));
        return panel;
    }
    std::unique_ptr<FrameCounter> frames;
};

std::chrono::duration<double> processorTime()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec);
    const auto micros = static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
    return std::chrono::duration<double>(seconds + micros / 1e6);
}

void run(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

void measure(const char* name, const FrameCounter& frames)
{
    run(settlingTime);
    const int framesBefore = frames.count;
    const auto processorBefore = processorTime();
    const auto start = Clock::now();
    run(measuredTime);
    const std::chrono::duration<double> time = Clock::now() - start;
    const double share = (processorTime() - processorBefore) / time * 100;
    const double rate = (frames.count - framesBefore) / time.count();
    QTextStream(stdout) << QString::asprintf("%-12s %6.1f frames/s %6.2f %% of a core\n", name, rate, share);
}

/// Speaks into the meter for as long as it exists.
class Voice {
public:
    explicit Voice(HUDController& hud)
    {
        QObject::connect(&timer_, &QTimer::timeout, [this, &hud] {
            const double level = 0.08 * std::abs(std::sin(0.7 * beat_) * std::cos(0.23 * beat_));
            ++beat_;
            hud.pushLevel(static_cast<float>(level));
        });
        timer_.start(levelInterval);
    }

private:
    QTimer timer_;
    int beat_ = 0;
};

void measureAll()
{
    QtMainQueue queue;
    WatchedPanels panels;
    HUDController hud(queue, panels);
    hud.showRecording();
    {
        const Voice voice(hud);
        measure("recording", *panels.frames);
    }
    hud.showProcessing(QStringLiteral("Transcribing"));
    measure("processing", *panels.frames);
    hud.model().setState(HUDState::notice);
    hud.model().setStatusText(QStringLiteral("Saved to the clipboard."));
    measure("notice", *panels.frames);
    hud.hide({});
    measure("hidden", *panels.frames);
}

} // namespace
} // namespace corvandi::bench

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    corvandi::bench::measureAll();
    return EXIT_SUCCESS;
}
