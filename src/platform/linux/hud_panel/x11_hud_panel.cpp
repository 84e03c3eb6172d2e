#include "platform/linux/hud_panel/x11_hud_panel.h"

#include "platform/linux/hud_panel/compositor.h"
#include "platform/linux/hud_panel/window_gravity.h"

#include <QEasingCurve>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace corvandi {
namespace {

/// Quick at first and slow at the end.
QEasingCurve easeOut()
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment({0, 0}, {0.58, 1}, {1, 1});
    return curve;
}

} // namespace

X11HudPanel::X11HudPanel(HUDModel& model)
    : view_(model)
{
    view_.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                         Qt::X11BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus |
                         Qt::WindowTransparentForInput | Qt::NoDropShadowWindowHint);
    view_.setAttribute(Qt::WA_ShowWithoutActivating);
    view_.setAttribute(Qt::WA_TranslucentBackground);
    view_.setAttribute(Qt::WA_X11NetWmWindowTypeNotification);
    // The last window of the program may close while this one is on show.
    view_.setAttribute(Qt::WA_QuitOnClose, false);
    keepPictureInTheMiddle(view_);
    fade_.setEasingCurve(easeOut());
    QObject::connect(&fade_, &QVariantAnimation::valueChanged, &view_,
                     [this](const QVariant& alpha) { view_.setWindowOpacity(alpha.toDouble()); });
    QObject::connect(&view_, &HudView::pillChanged, &view_, [this] {
        place();
        updateMask();
    });
}

std::optional<PanelRect> X11HudPanel::mainScreenVisibleFrame() const
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return std::nullopt;
    const QRectF free = screen->availableGeometry();
    return PanelRect{free.x(), free.y(), free.width(), free.height()};
}

void X11HudPanel::setFrame(const PanelRect& frame)
{
    frame_ = QRectF(frame.x, frame.y, frame.width, frame.height);
    if (const auto screen = mainScreenVisibleFrame())
        view_.setWidestPill(std::max(frame.width, screen->width - 2 * HudView::shadowMargin));
    place();
}

/// A capsule that is wider than the frame widens the window on both sides alike.
void X11HudPanel::place()
{
    constexpr int margin = HudView::shadowMargin;
    const qreal more = std::max((view_.neededWidth() - frame_.width()) / 2, 0.0);
    const QRect inner = frame_.adjusted(-more, 0, more, 0).toRect();
    view_.setGeometry(inner.adjusted(-margin, -margin, margin, margin));
}

void X11HudPanel::setAlpha(double alpha)
{
    fade_.stop();
    view_.setWindowOpacity(alpha);
}

void X11HudPanel::orderFront()
{
    adaptToDesktop();
    view_.show();
    view_.raise();
}

void X11HudPanel::fadeTo(double alpha, MainQueue::Duration duration)
{
    if (!isComposited_)
        return setAlpha(alpha);
    fade_.stop();
    fade_.setStartValue(view_.windowOpacity());
    fade_.setEndValue(alpha);
    fade_.setDuration(static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(duration).count()));
    fade_.start();
}

void X11HudPanel::orderOut()
{
    fade_.stop();
    view_.hide();
}

void X11HudPanel::adaptToDesktop()
{
    isComposited_ = isCompositorRunning();
    view_.setBackdrop(isComposited_ ? HudBackdrop::translucent : HudBackdrop::opaque);
    updateMask();
}

void X11HudPanel::updateMask()
{
    if (isComposited_)
        view_.clearMask();
    else
        view_.setMask(view_.pillRegion());
}

std::unique_ptr<HUDPanel> X11HudPanels::create(HUDModel& model)
{
    return std::make_unique<X11HudPanel>(model);
}

} // namespace corvandi
