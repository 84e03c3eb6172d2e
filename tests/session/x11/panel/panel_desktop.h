#pragma once

#include "support/event_loop.h"

#include <QGuiApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QWidget>

#include <stdexcept>

namespace corvandi::testing {

[[nodiscard]] inline bool hasWindowManager()
{
    return qgetenv("TEST_WINDOW_MANAGER") != "none";
}

[[nodiscard]] inline bool hasCompositor()
{
    return qgetenv("TEST_COMPOSITOR") != "none";
}

/// Runs a program to its end and returns what it printed; throws when it fails.
inline QString run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(10000) || process.exitCode() != 0)
        throw std::runtime_error(program.toStdString() +
                                 " failed: " + process.readAllStandardError().toStdString());
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// Runs a line that a shell would understand, without a shell.
inline QString run(const QString& line)
{
    QStringList words = QProcess::splitCommand(line);
    const QString program = words.takeFirst();
    return run(program, words);
}

inline QImage screenshot(const QRect& area)
{
    QScreen* screen = QGuiApplication::primaryScreen();
    const QRect onScreen = area.translated(-screen->geometry().topLeft());
    return screen->grabWindow(0, onScreen.x(), onScreen.y(), onScreen.width(), onScreen.height()).toImage();
}

/// A place on the main screen.
inline QColor screenColorAt(const QPoint& point)
{
    QScreen* screen = QGuiApplication::primaryScreen();
    const QPoint onScreen = point - screen->geometry().topLeft();
    return screen->grabWindow(0, onScreen.x(), onScreen.y(), 1, 1).toImage().pixelColor(0, 0);
}

/// Somebody else's window in one colour, beneath the panel; it counts the clicks that it gets.
class Underlay : public QWidget {
public:
    static inline const QColor color{90, 160, 110};

    Underlay()
    {
        setGeometry(200, 350, 880, 430);
        setPalette(color);
        show();
        activateWindow();
        if (!waitUntil([this] { return isActiveWindow() && screenColorAt({300, 500}) == color; }))
            throw std::runtime_error("the window of the test does not become active");
    }
    int clicks = 0;

protected:
    void mousePressEvent(QMouseEvent*) override { ++clicks; }
};

} // namespace corvandi::testing
