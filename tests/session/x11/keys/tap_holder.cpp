#include "session/x11/keys/x11_event_tap.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>

#include <unistd.h>

namespace {

void say(const char* word)
{
    std::puts(word);
    std::fflush(stdout);
}

class StandardErrorLog : public corvandi::SystemLog {
protected:
    void writeLine(const QString& line) override { std::fprintf(stderr, "%s\n", qPrintable(line)); }
};

} // namespace

/// Holds a chord and tells what it hears: "ready", "down", "up". It exits when its input ends.
int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    StandardErrorLog log;
    corvandi::WatchedChord watched;
    corvandi::X11EventTapFactory taps(log, watched);
    const auto tap = taps.create(corvandi::KeyChord{}, [](const corvandi::KeyEvent& event) {
        if (event.type == corvandi::KeyEventType::keyDown)
            say("down");
        if (event.type == corvandi::KeyEventType::keyUp)
            say("up");
        return corvandi::TapVerdict::swallow;
    });
    if (!tap)
        return 1;
    tap->setEnabled(true);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    say("ready");
    return QCoreApplication::exec();
}
