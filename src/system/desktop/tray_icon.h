#pragma once

#include "ports/system_log.h"
#include "system/desktop/tray_host_watch.h"

#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>

#include <optional>

namespace corvandi {

/// The program's icon in the desktop's tray, with its menu. A left click opens the menu as a right click
/// does, wherever the tray passes clicks on.
///
/// Trays of both kinds are served; see `TrayHostWatch` for which one is taken. Without a tray the log
/// says so in one line and the icon appears as soon as there is one. A tray that ends and starts again
/// gets the icon back. When the session bus ends, a tray that was reached over it is lost for good.
///
/// Thread: main thread only, after the application object of the toolkit (whose name is the icon's name
/// for screen readers).
class TrayIcon {
public:
    /// All of them outlive the icon.
    TrayIcon(QIcon icon, QMenu& menu, MainQueue& queue, WindowTray& windowTray, SystemLog& log);

private:
    void appear();
    void openMenu(QSystemTrayIcon::ActivationReason click);

    QIcon picture_;
    SystemLog& log_;
    QMenu& menu_;
    bool wasMissing_ = false;
    std::optional<QSystemTrayIcon> item_;
    std::optional<TrayHostWatch> host_;
};

} // namespace corvandi
