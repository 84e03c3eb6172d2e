#include "session/x11/keys/x11_key_capture.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

class StandardErrorLog : public corvandi::SystemLog {
protected:
    void writeLine(const QString& line) override { std::fprintf(stderr, "%s\n", qPrintable(line)); }
};

} // namespace

/// Holds the keyboards until it is killed; says "ready" when it does.
int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    StandardErrorLog log;
    corvandi::X11KeyCapture capture(log);
    const auto held = capture.begin([](const corvandi::CapturedKey&) {});
    if (!held)
        return 1;
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
