#include "session/x11/keys/x11_keyboard.h"

#include <QCoreApplication>

#include <cstdio>

#include <unistd.h>

namespace {

class StandardErrorLog : public corvandi::SystemLog {
protected:
    void writeLine(const QString& line) override { std::fprintf(stderr, "%s\n", qPrintable(line)); }
};

} // namespace

/// Is in the middle of a text when it says "typing", and stays there until its input ends.
int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    StandardErrorLog log;
    corvandi::WatchedChord watched;
    corvandi::X11Keyboard keyboard(log, watched, [] { return corvandi::PasteShortcut::none; });
    const auto source = keyboard.createSource(QStringLiteral("a\u4f60\u597d"));
    if (!source)
        return 1;
    source->post({corvandi::virtual_key::none, corvandi::KeyDirection::down, 0, u"a"});
    std::puts("typing");
    std::fflush(stdout);
    char end = 0;
    (void)!read(STDIN_FILENO, &end, 1);
    return 0;
}
