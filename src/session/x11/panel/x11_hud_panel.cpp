#include "session/x11/panel/x11_hud_panel.h"

#include <QEasingCurve>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace corvandi {
namespace {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};
template<class Reply>
using ReplyPtr = std::unique_ptr<Reply, FreeReply>;

// A compositor owns the selection of this name; the number is that of the X screen, of which today's
// servers have one.
constexpr std::string_view compositorSelection = "_NET_WM_CM_S0";

xcb_connection_t* serverConnection()
{
    const auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

} // namespace

bool isCompositorRunning()
{
    xcb_connection_t* server = serverConnection();
    if (!server)
        return false;
    const auto atomRequest =
        xcb_intern_atom(server, 0, compositorSelection.size(), compositorSelection.data());
    const ReplyPtr<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(server, atomRequest, nullptr));
    if (!atom)
        return false;
    const auto ownerRequest = xcb_get_selection_owner(server, atom->atom);
    const ReplyPtr<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(server, ownerRequest, nullptr));
    return owner && owner->owner != XCB_NONE;
}

void keepPictureInTheMiddle(QWidget& window)
{
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return;
    const uint32_t gravity = XCB_GRAVITY_CENTER;
    const auto id = static_cast<xcb_window_t>(window.winId());
    xcb_change_window_attributes(x11->connection(), id, XCB_CW_BIT_GRAVITY, &gravity);
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
