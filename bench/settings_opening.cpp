// settings_opening PROGRAM [RUNS]: on the virtual desktop that it is started in, opens the settings from
// the tray's menu and by a second launch, and prints how long a person waits: until the window is mapped,
// and until the screen shows it as it stays.
//
//   desktop/desktop with audio=pulse tray=xfce4-panel --
//       build/release/bench/settings_opening build/release/src/app/corvandi

#include "load_average.h"

#include "harness/picture.h"
#include "harness/preferences.h"
#include "harness/program.h"
#include "harness/tray_menu.h"
#include "harness/windows.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <thread>
#include <vector>

#include <X11/Xlib.h>
#include <X11/extensions/Xdamage.h>

namespace {

using namespace corvandi::harness;
using namespace std::chrono_literals;

constexpr int defaultRuns = 20;
constexpr const char* title = "Corvandi Settings";
/// Nothing has changed for that long: the window stays as it is.
constexpr auto quiet = 400ms;
/// In which the program loads its model and settles, and a closed window is forgotten.
constexpr auto rest = 2s;

struct Opening {
    double mapped = 0;
    double painted = 0;
};

double milliseconds(Clock::duration time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

/// Watches the screen change.
class Screen {
public:
    Screen()
    {
        int errorBase = 0;
        if (::XDamageQueryExtension(display_.get(), &eventBase_, &errorBase) == 0)
            throw HarnessError("the X server does not tell of changes on the screen");
        damage_ = ::XDamageCreate(display_.get(), root(), XDamageReportNonEmpty);
        ::XSelectInput(display_.get(), root(), SubstructureNotifyMask);
        ::XSync(display_.get(), False);
    }

    /// What happens on the screen from `start` until it is quiet.
    Opening watch(Clock::time_point start)
    {
        frames_.clear();
        mapped_.reset();
        while (!mapped_ || frames_.empty() || display_.waitForEvent(Clock::now() + quiet))
            readEvents();
        const auto area = Windows().activeArea();
        if (Windows().activeTitle() != title || !mapped_ || !area)
            throw HarnessError("the settings did not open");
        return {milliseconds(*mapped_ - start), milliseconds(firstLike(*area) - start)};
    }
    void forgetEvents()
    {
        XEvent event;
        while (::XPending(display_.get()) > 0)
            ::XNextEvent(display_.get(), &event);
        ::XDamageSubtract(display_.get(), damage_, None, None);
        ::XSync(display_.get(), False);
    }

private:
    struct Frame {
        Clock::time_point at;
        Picture picture;
    };

    [[nodiscard]] Window root() const { return DefaultRootWindow(display_.get()); }

    void readEvents()
    {
        bool hasChanged = false;
        XEvent event;
        while (::XPending(display_.get()) > 0) {
            ::XNextEvent(display_.get(), &event);
            if (event.type == MapNotify && !mapped_)
                mapped_ = Clock::now();
            hasChanged = hasChanged || event.type == eventBase_ + XDamageNotify;
        }
        if (!hasChanged) {
            if (!display_.waitForEvent(Clock::now() + patience))
                throw HarnessError("nothing happens on the screen");
            return;
        }
        const auto now = Clock::now();
        ::XDamageSubtract(display_.get(), damage_, None, None);
        ::XSync(display_.get(), False);
        frames_.push_back({now, Picture()});
    }

    /// When the area began to look as it did in the end.
    [[nodiscard]] Clock::time_point firstLike(const Area& area) const
    {
        const auto last = frames_.back().picture.pixels(area);
        auto first = frames_.back().at;
        for (auto frame = frames_.rbegin(); frame != frames_.rend(); ++frame) {
            if (frame->picture.pixels(area) != last)
                break;
            first = frame->at;
        }
        return first;
    }

    XDisplay display_;
    int eventBase_ = 0;
    Damage damage_ = 0;
    std::vector<Frame> frames_;
    std::optional<Clock::time_point> mapped_;
};

using Open = std::function<Clock::time_point()>;

Opening measure(Screen& screen, const Open& open)
{
    std::this_thread::sleep_for(rest);
    screen.forgetEvents();
    const Opening opening = screen.watch(open());
    (void)outputOf({"wmctrl", "-F", "-c", title});
    if (!Windows().waitUntilClosed(title))
        throw HarnessError("the settings do not close");
    return opening;
}

void report(const char* name, const std::vector<Opening>& openings)
{
    const auto column = [&](double Opening::*value) {
        std::vector<double> values;
        for (const Opening& opening : openings)
            values.push_back(opening.*value);
        std::sort(values.begin(), values.end());
        return values;
    };
    const std::vector<double> mapped = column(&Opening::mapped);
    const std::vector<double> painted = column(&Opening::painted);
    std::printf("%-30s %4zu   %6.0f %6.0f     %6.0f %6.0f\n", name, openings.size(),
                mapped[mapped.size() / 2], mapped.back(), painted[painted.size() / 2], painted.back());
    std::fflush(stdout);
}

struct Openings {
    std::vector<Opening> first;
    std::vector<Opening> later;
};

/// A program of its own each time, since only its first opening makes the window.
void measureOnce(Program& program, Screen& screen, const Open& open, Openings& openings)
{
    openings.first.push_back(measure(screen, open));
    openings.later.push_back(measure(screen, open));
    program.process().signal(SIGTERM);
    (void)program.process().waitUntilEnded();
}

void measureAll(const std::string& command, int count)
{
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "corvandi-opening";
    std::filesystem::create_directories(folder);
    writePreferences();
    Screen screen;
    Openings byMenu;
    Openings byLaunch;
    std::printf("load %s\n\n", corvandi::loadAverage().c_str());
    for (int run = 0; run < count; ++run) {
        Program program({command}, folder / "corvandi.log");
        program.waitForLine("Corvandi: ready");
        const TrayMenu menu(program.process().id());
        measureOnce(
            program, screen, [&] { return menu.choose("Settings…"); }, byMenu);

        Program again({command}, folder / "corvandi.log");
        again.waitForLine("Corvandi: ready");
        std::optional<ChildProcess> second;
        const auto launch = [&] {
            const auto before = Clock::now();
            second.emplace(std::vector<std::string>{command},
                           ChildOptions{.output = folder / "second.log", .input = ChildInput::nothing});
            return before;
        };
        measureOnce(again, screen, launch, byLaunch);
    }
    std::printf("                                      window mapped     shown as it stays\n"
                "                                      (ms)              (ms)\n"
                "opened                         runs   median  worst     median  worst\n");
    report("from the menu, first time", byMenu.first);
    report("from the menu, later", byMenu.later);
    report("by a second launch, first time", byLaunch.first);
    report("by a second launch, later", byLaunch.later);
    std::filesystem::remove_all(folder);
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 2 || count > 3) {
        std::cerr << "usage: settings_opening PROGRAM [RUNS]\n";
        return EXIT_FAILURE;
    }
    try {
        measureAll(arguments[1], count == 3 ? std::atoi(arguments[2]) : defaultRuns);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << "measuring failed: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
