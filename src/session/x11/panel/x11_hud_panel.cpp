#include "session/x11/panel/x11_hud_panel.h"

#include "session/x11/xcb_connection.h"

#include <QEasingCurve>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace corvandi {

bool isCompositorRunning()
{
    xcb_connection_t* connection = toolkitConnection();
    if (!connection)
        return false;
    // A compositor owns the selection of this name; the number is that of the X screen, of which today's
    // servers have one.
    const xcb_atom_t selection = atomOf(connection, "_NET_WM_CM_S0");
    const auto owner =
        replyOf(connection, xcb_get_selection_owner_reply, xcb_get_selection_owner(connection, selection));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

void keepPictureInTheMiddle(QWidget& window)
{
    xcb_connection_t* connection = toolkitConnection();
    if (!connection)
        return;
    const uint32_t gravity = XCB_GRAVITY_CENTER;
    const auto id = static_cast<xcb_window_t>(window.winId());
    xcb_change_window_attributes(connection, id, XCB_CW_BIT_GRAVITY, &gravity);
}

namespace {

/// Quick at first and slow at the end.
QEasingCurve easeOut()
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment({0, 0}, {0.58, 1}, {1, 1});
    return curve;
}

} // namespace

X11HUDPanel::X11HUDPanel(std::unique_ptr<HUDContent> content)
    : content_(std::move(content))
    , window_(content_->widget())
{
    window_.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::X11BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus |
                           Qt::WindowTransparentForInput | Qt::NoDropShadowWindowHint);
    window_.setAttribute(Qt::WA_ShowWithoutActivating);
    window_.setAttribute(Qt::WA_TranslucentBackground);
    window_.setAttribute(Qt::WA_X11NetWmWindowTypeNotification);
    // The last window of the program may close while this one is on show.
    window_.setAttribute(Qt::WA_QuitOnClose, false);
    keepPictureInTheMiddle(window_);
    fade_.setEasingCurve(easeOut());
    QObject::connect(&fade_, &QVariantAnimation::valueChanged, &window_,
                     [this](const QVariant& alpha) { window_.setWindowOpacity(alpha.toDouble()); });
    content_->whenPillChanges([this] {
        place();
        updateMask();
    });
}

std::optional<PanelRect> X11HUDPanel::mainScreenVisibleFrame() const
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return std::nullopt;
    const QRectF free = screen->availableGeometry();
    return PanelRect{free.x(), free.y(), free.width(), free.height()};
}

void X11HUDPanel::setFrame(const PanelRect& frame)
{
    frame_ = QRectF(frame.x, frame.y, frame.width, frame.height);
    if (const auto screen = mainScreenVisibleFrame())
        content_->setWidestPill(std::max(frame.width, screen->width - 2 * HUDContent::shadowMargin));
    place();
}

/// A capsule that is wider than the frame widens the window on both sides alike.
void X11HUDPanel::place()
{
    constexpr int margin = HUDContent::shadowMargin;
    const qreal more = std::max((content_->neededWidth() - frame_.width()) / 2, 0.0);
    const QRect inner = frame_.adjusted(-more, 0, more, 0).toRect();
    window_.setGeometry(inner.adjusted(-margin, -margin, margin, margin));
}

void X11HUDPanel::setAlpha(double alpha)
{
    fade_.stop();
    window_.setWindowOpacity(alpha);
}

void X11HUDPanel::orderFront()
{
    adaptToDesktop();
    window_.show();
    window_.raise();
}

void X11HUDPanel::fadeTo(double alpha, MainQueue::Duration duration)
{
    if (!isComposited_)
        return setAlpha(alpha);
    fade_.stop();
    fade_.setStartValue(window_.windowOpacity());
    fade_.setEndValue(alpha);
    fade_.setDuration(static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(duration).count()));
    fade_.start();
}

void X11HUDPanel::orderOut()
{
    fade_.stop();
    window_.hide();
}

void X11HUDPanel::adaptToDesktop()
{
    isComposited_ = isCompositorRunning();
    content_->setBackdrop(isComposited_ ? HUDBackdrop::translucent : HUDBackdrop::opaque);
    updateMask();
}

void X11HUDPanel::updateMask()
{
    if (isComposited_)
        window_.clearMask();
    else
        window_.setMask(content_->pillRegion());
}

std::unique_ptr<HUDPanel> X11HUDPanelFactory::create(HUDModel& model)
{
    return std::make_unique<X11HUDPanel>(makeContent_(model));
}

} // namespace corvandi
