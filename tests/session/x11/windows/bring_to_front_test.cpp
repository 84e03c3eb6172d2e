#include "session/x11/windows/bring_to_front.h"

#include "support/event_loop.h"

#include <QLineEdit>
#include <QProcess>
#include <QWindow>

#include <gtest/gtest.h>

namespace corvandi::testing {
namespace {

const QString ours = QStringLiteral("ours");
const QString theirs = QStringLiteral("theirs");

/// Whether the window manager has made the window with this title the active one.
bool becomesActive(const QString& title)
{
    return waitUntil([&] {
        QProcess query;
        query.start(QStringLiteral("xdotool"),
                    {QStringLiteral("getactivewindow"), QStringLiteral("getwindowname")});
        query.waitForFinished();
        return QString::fromLocal8Bit(query.readAllStandardOutput().trimmed()) == title;
    });
}

/// Another program, whose window the user works in.
class Terminal {
public:
    Terminal()
    {
        process_.start(QStringLiteral("xterm"),
                       {QStringLiteral("-T"), theirs, QStringLiteral("-e"), QStringLiteral("cat")});
        EXPECT_TRUE(process_.waitForStarted());
        EXPECT_TRUE(becomesActive(theirs));
    }
    ~Terminal()
    {
        process_.kill();
        process_.waitForFinished();
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

private:
    QProcess process_;
};

TEST(BringToFront, AWindowBehindAnotherProgramGetsTheKeyboard)
{
    QLineEdit window;
    window.setWindowTitle(ours);
    window.show();
    ASSERT_TRUE(waitUntil([&] { return window.windowHandle()->isExposed(); }));
    const Terminal terminal;
    bringToFront(window);
    EXPECT_TRUE(becomesActive(ours));
    EXPECT_TRUE(waitUntil([&] { return window.isActiveWindow(); }));
}

} // namespace
} // namespace corvandi::testing
