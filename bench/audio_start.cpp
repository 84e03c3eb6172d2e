// Measures the time from starting the microphone to its first block of sound, on the default input
// device of the running sound server.

#include "base/error.h"
#include "system/audio/pulse_audio_input.h"
#include "system/process/qt_main_queue.h"

#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <vector>

namespace corvandi::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int runs = 20;
constexpr uint32_t framesPerBlock = 2048;

class StderrLog : public SystemLog {
    void writeLine(const QString& line) override { QTextStream(stderr) << line << Qt::endl; }
};

template<class Condition>
bool runUntil(Condition condition)
{
    const Clock::time_point deadline = Clock::now() + 3s;
    QTimer wakeUp;
    wakeUp.start(1ms);
    while (!condition()) {
        if (Clock::now() > deadline)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

/// Milliseconds to the first block, or nothing when none came.
std::optional<double> measureOnce(AudioInput& input)
{
    std::atomic<Clock::time_point> first{};
    const Clock::time_point begin = Clock::now();
    input.installTap(framesPerBlock, input.inputFormat(), [&first](const AudioBuffer&) {
        if (first.load() == Clock::time_point())
            first = Clock::now();
    });
    input.prepare();
    const auto starting = input.start({});
    const bool came = runUntil([&first] { return first.load() != Clock::time_point(); });
    const auto removing = input.removeTap();
    runUntil([&removing] { return removing.isReady(); });
    input.stop();
    if (!came)
        return std::nullopt;
    return std::chrono::duration<double, std::milli>(first.load() - begin).count();
}

int print(AudioInput& input)
{
    QTextStream out(stdout);
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        const auto time = measureOnce(input);
        if (!time)
            return 1;
        times.push_back(*time);
    }
    std::sort(times.begin(), times.end());
    out << "first block after " << times[runs / 2] << " ms (median of " << runs << "), " << times.front()
        << " to " << times.back() << " ms" << Qt::endl;
    return 0;
}

} // namespace
} // namespace corvandi::bench

int main(int argc, char** argv)
{
    using namespace corvandi;
    const QCoreApplication application(argc, argv);
    QtMainQueue queue;
    bench::StderrLog log;
    PulseServer server(queue, log);
    PulseAudioInput input(server, queue, log);
    if (!bench::runUntil([&input] { return input.inputFormat().sampleRate > 0; })) {
        QTextStream(stderr) << "no audio input available" << Qt::endl;
        return 1;
    }
    return bench::print(input);
}
