// How long an ordinary key takes from the keyboard to the focused window, with and without a tap in
// another process. Run it on a virtual desktop: it presses keys.
//
//   key_delay [keys]
//
// Keys are struck in rounds, with and without the tap in turns. Printed are the percentiles of all keys,
// and what the tap adds to a round's 99th percentile (the median over the rounds, since on a busy machine
// single rounds are the scheduler's). Exits with 1 when that is a millisecond or more.

#include "ports/system_log.h"
#include "session/x11/keys/watched_chord.h"
#include "session/x11/keys/x11_connection.h"
#include "session/x11/keys/x11_event_tap.h"
#include "session/x11/keys/x11_key_event_source.h"
#include "session/x11/xcb_connection.h"

#include <QCoreApplication>
#include <QProcess>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

#include <poll.h>

namespace {

using corvandi::KeyDirection;
using corvandi::owned;
using std::chrono::duration_cast;
using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

constexpr uint8_t keyA = 38;
constexpr size_t defaultKeyCount = 4000;
constexpr size_t rounds = 20;
constexpr size_t fewestKeysPerRound = 100;
constexpr Microseconds allowedAtP99{1000};
constexpr std::chrono::milliseconds longestWait{2000};
constexpr size_t toleratedLosses = 5;
/// Between two keys, so that each finds an idle server, as a person's keys do.
constexpr std::chrono::microseconds pauseBetweenKeys{500};

class StandardErrorLog : public corvandi::SystemLog {
protected:
    void writeLine(const QString& line) override { std::fprintf(stderr, "%s\n", qPrintable(line)); }
};

/// The process that holds the tap: nothing but its event loop.
int holdTap(QCoreApplication& application)
{
    StandardErrorLog log;
    corvandi::WatchedChord watched;
    corvandi::X11EventTapFactory taps(log, watched);
    const auto tap = taps.create(corvandi::KeyChord{},
                                 [](const corvandi::KeyEvent&) { return corvandi::TapVerdict::pass; });
    if (!tap)
        return 1;
    tap->setEnabled(true);
    std::puts("ready");
    std::fflush(stdout);
    return application.exec();
}

/// A window with the focus.
class Window {
public:
    explicit Window(const corvandi::X11Connection& connection)
        : connection_(connection.get())
        , window_(xcb_generate_id(connection.get()))
    {
        const uint32_t values[] = {1, XCB_EVENT_MASK_KEY_PRESS};
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, connection.root(), 0, 0, 100, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(connection_, window_);
    }

    void takeFocus() const
    {
        xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT, window_, XCB_CURRENT_TIME);
        xcb_flush(connection_);
    }

    /// False when no key arrives: another window has taken the focus.
    [[nodiscard]] bool awaitKey() const
    {
        while (true) {
            while (const auto event = owned(xcb_poll_for_event(connection_))) {
                if ((event->response_type & 0x7F) == XCB_KEY_PRESS)
                    return true;
            }
            pollfd socket{xcb_get_file_descriptor(connection_), POLLIN, 0};
            if (poll(&socket, 1, static_cast<int>(longestWait.count())) <= 0)
                return false;
        }
    }

private:
    xcb_connection_t* connection_;
    xcb_window_t window_;
};

class DelayMeter {
public:
    DelayMeter(const corvandi::X11Connection& keyboard, const Window& window)
        : keyboard_(keyboard)
        , window_(window)
    {
    }

    [[nodiscard]] std::vector<Microseconds> strikeKeys(size_t count) const
    {
        std::vector<Microseconds> delays;
        size_t lost = 0;
        window_.takeFocus();
        while (delays.size() < count) {
            const auto start = Clock::now();
            corvandi::fakeKey(keyboard_, keyA, KeyDirection::down);
            keyboard_.flush();
            if (window_.awaitKey())
                delays.emplace_back(Clock::now() - start);
            else if (++lost < toleratedLosses)
                window_.takeFocus();
            else
                throw std::runtime_error("the window does not get the keys");
            corvandi::fakeKey(keyboard_, keyA, KeyDirection::up);
            keyboard_.sync();
            std::this_thread::sleep_for(pauseBetweenKeys);
        }
        return delays;
    }

private:
    const corvandi::X11Connection& keyboard_;
    const Window& window_;
};

using Delays = std::vector<Microseconds>;

Microseconds percentile(Delays delays, size_t percent)
{
    std::sort(delays.begin(), delays.end());
    return delays[delays.size() * percent / 100];
}

void print(const char* name, const std::vector<Delays>& perRound)
{
    Delays all;
    for (const Delays& delays : perRound)
        all.insert(all.end(), delays.begin(), delays.end());
    std::printf("%-12s n=%zu  median %7.1f us  p99 %7.1f us\n", name, all.size(), percentile(all, 50).count(),
                percentile(all, 99).count());
}

Microseconds addedAtP99(const std::vector<Delays>& without, const std::vector<Delays>& with)
{
    Delays added;
    for (size_t round = 0; round < with.size(); ++round)
        added.push_back(percentile(with[round], 99) - percentile(without[round], 99));
    return percentile(added, 50);
}

int measure(size_t keysPerRound)
{
    StandardErrorLog log;
    const auto keyboard = corvandi::X11Connection::open(log);
    const auto display = corvandi::X11Connection::open(log);
    if (!keyboard || !display)
        return 2;
    const Window window(*display);
    const DelayMeter meter(*keyboard, window);
    std::vector<Delays> without;
    std::vector<Delays> with;
    for (size_t round = 0; round < rounds; ++round) {
        without.push_back(meter.strikeKeys(keysPerRound));
        QProcess holder;
        holder.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--hold-tap")});
        if (!holder.waitForReadyRead())
            return 2;
        with.push_back(meter.strikeKeys(keysPerRound));
        holder.kill();
        holder.waitForFinished();
    }
    print("without tap", without);
    print("with tap", with);
    const Microseconds added = addedAtP99(without, with);
    std::printf("the tap adds %.1f us at p99\n", added.count());
    return added < allowedAtP99 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QString argument = application.arguments().value(1);
    if (argument == QLatin1String("--hold-tap"))
        return holdTap(application);
    const size_t keyCount = argument.isEmpty() ? defaultKeyCount : argument.toUInt();
    return measure(std::max(fewestKeysPerRound, keyCount / rounds));
}
