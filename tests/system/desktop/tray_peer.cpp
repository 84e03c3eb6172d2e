#include "session/x11/windows/xembed_tray.h"
#include "shell/menu/menu_content.h"
#include "support/fake_user_defaults.h"
#include "system/desktop/tray_icon.h"
#include "system/process/qt_main_queue.h"
#include "views/menu/menu_bar_pictures.h"
#include "views/menu/menu_view.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QSocketNotifier>

#include <iostream>
#include <unistd.h>

namespace {

using namespace corvandi;

void say(const std::string& line)
{
    std::cout << line << std::endl;
}

class OutputLog : public SystemLog {
protected:
    void writeLine(const QString& line) override { say(line.toStdString()); }
};

/// A capsule on a stand.
void paintMicrophone(QPainter& painter, const QRectF& area, const QColor& color)
{
    const auto part = [&area](double left, double top, double width, double height) {
        return QRectF(area.left() + left * area.width(), area.top() + top * area.height(),
                      width * area.width(), height * area.height());
    };
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRoundedRect(part(0.33, 0, 0.34, 0.6), area.width() * 0.17, area.width() * 0.17);
    path.addRect(part(0.45, 0.65, 0.1, 0.3));
    path.addRect(part(0.25, 0.88, 0.5, 0.1));
    painter.fillPath(path, color);
}

class Peer {
public:
    Peer()
    {
        QObject::connect(&input_, &QSocketNotifier::activated, &input_, [this] { obey(); });
    }

private:
    [[nodiscard]] MenuEntries entries() const
    {
        say("asked");
        return MenuContent{
            .settings = settings_,
            .isHotkeyActive = isHotkeyActive_,
            .canCheckForUpdates = canCheckForUpdates_,
            .actions = {.openAccessibility = [] { say("chose accessibility"); },
                        .checkForUpdates = [] { say("chose updates"); },
                        .openSettings = [] { say("chose settings"); },
                        .quit = [] { QApplication::quit(); }},
        }
            .entries();
    }
    /// Each command is one letter: what is capital also tells the icon.
    void obey()
    {
        char command = 0;
        if (read(STDIN_FILENO, &command, 1) != 1) {
            QApplication::quit();
            return;
        }
        if (command == 'a' || command == 'A')
            isHotkeyActive_ = !isHotkeyActive_;
        if (command == 'u' || command == 'U')
            canCheckForUpdates_ = !canCheckForUpdates_;
        if (command == 'A' || command == 'U')
            menu_.refresh();
        say(std::string("did ") + command);
    }

    testing::FakeUserDefaults defaults_;
    Settings settings_{defaults_};
    bool isHotkeyActive_ = false;
    bool canCheckForUpdates_ = false;
    OutputLog log_;
    QtMainQueue queue_;
    QSocketNotifier input_{STDIN_FILENO, QSocketNotifier::Read};
    XEmbedTray windowTray_;
    MenuView menu_{[this] { return entries(); }};
    TrayIcon icon_{templateIcon({.size = {18, 18}, .isTemplate = true, .paint = paintMicrophone},
                                QStringLiteral("corvandi-test-symbolic")),
                   menu_.menu(), queue_, windowTray_, log_};
};

} // namespace

int main(int argc, char** argv)
{
    QApplication::setApplicationName(QStringLiteral("Corvandi"));
    QApplication::setQuitOnLastWindowClosed(false);
    const QApplication application(argc, argv);
    const Peer peer;
    say("ready");
    return QApplication::exec();
}
