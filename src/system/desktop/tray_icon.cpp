#include "system/desktop/tray_icon.h"

#include <QCursor>

#include <utility>

namespace corvandi {

TrayIcon::TrayIcon(QIcon icon, QMenu& menu, MainQueue& queue, WindowTray& windowTray, SystemLog& log)
    : picture_(std::move(icon))
    , log_(log)
    , menu_(menu)
{
    // The toolkit decides for one kind of tray when its first tray icon is made, for the whole life of
    // the program; so none is made before there is a tray.
    host_.emplace(queue, windowTray,
                  TrayHostWatch::Callbacks{
                      .found = [this] { appear(); },
                      .notYet =
                          [this] {
                              wasMissing_ = true;
                              log_.write(QStringLiteral("no system tray yet; waiting for one"));
                          },
                  });
}

void TrayIcon::appear()
{
    host_.reset();
    if (wasMissing_)
        log_.write(QStringLiteral("system tray found"));
    item_.emplace(picture_);
    item_->setToolTip(QStringLiteral("Corvandi"));
    item_->setContextMenu(&menu_);
    QObject::connect(&*item_, &QSystemTrayIcon::activated, &*item_,
                     [this](QSystemTrayIcon::ActivationReason click) { openMenu(click); });
    item_->show();
}

void TrayIcon::openMenu(QSystemTrayIcon::ActivationReason click)
{
    if (click == QSystemTrayIcon::Trigger)
        menu_.popup(QCursor::pos());
}

} // namespace corvandi
