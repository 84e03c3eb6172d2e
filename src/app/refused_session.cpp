#include "app/refused_session.h"

#include "shell/menu/menu_bar_icon.h"
#include "shell/menu/menu_content.h"
#include "system/desktop/tray_icon.h"
#include "system/process/qt_main_queue.h"
#include "views/menu/menu_bar_pictures.h"
#include "views/menu/menu_view.h"

#include <QApplication>

namespace corvandi {
namespace {

/// Only sessions with an X server of their own have trays that embed windows.
class NoWindowTray : public WindowTray {
public:
    [[nodiscard]] bool isThere() const override { return false; }
    [[nodiscard]] std::unique_ptr<Registration> watch(std::function<void()>) override
    {
        return std::make_unique<Registration>();
    }
};

} // namespace

struct RefusedSession::Objects {
    Objects(const QString& words, SystemLog& log)
        : menu([words] { return refusedMenuEntries(words, &QApplication::quit); })
        , trayIcon(templateIcon(MenuBarIcon(programPicture, symbolPicture).image(),
                                QStringLiteral("io.corvandi.Corvandi-symbolic")),
                   menu.menu(), queue, windowTray, log)
    {
    }

    QtMainQueue queue;
    NoWindowTray windowTray;
    MenuView menu;
    TrayIcon trayIcon;
};

RefusedSession::RefusedSession(const QString& words, SystemLog& log)
    : objects_(std::make_unique<Objects>(words, log))
{
}

RefusedSession::~RefusedSession() = default;

} // namespace corvandi
