#include "platform/linux/hud_panel/window_gravity.h"

#include <QGuiApplication>
#include <QWidget>

#include <xcb/xcb.h>

namespace corvandi {

void keepPictureInTheMiddle(QWidget& window)
{
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return;
    const uint32_t gravity = XCB_GRAVITY_CENTER;
    const auto id = static_cast<xcb_window_t>(window.winId());
    xcb_change_window_attributes(x11->connection(), id, XCB_CW_BIT_GRAVITY, &gravity);
}

} // namespace corvandi
