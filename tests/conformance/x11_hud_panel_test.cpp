#include "conformance/event_loop_time.h"
#include "conformance/hud_panel_desktop_suite.h"
#include "session/x11/panel/panel_desktop.h"
#include "session/x11/panel/x11_hud_panel.h"
#include "views/hud/hud_view.h"

#include <QPointer>

namespace corvandi::testing {
namespace {

QRectF rectOf(const PanelRect& frame)
{
    return {frame.x, frame.y, frame.width, frame.height};
}

class X11HUDPanelDriver : public OnEventLoop<HUDPanelDesktopDriver> {
public:
    [[nodiscard]] HUDPanelFactory& panels() override { return panels_; }
    [[nodiscard]] bool isOnShow(const PanelRect& frame) override
    {
        return screenColorAt(rectOf(frame).center().toPoint()) != Underlay::color;
    }
    [[nodiscard]] std::optional<double> opacity() override
    {
        return hasCompositor() ? std::optional(view_->windowOpacity()) : std::nullopt;
    }
    [[nodiscard]] bool hasApplicationTheFocus() override
    {
        return run(QStringLiteral("xdotool getwindowfocus")).trimmed() ==
                   QString::number(application_.winId()) &&
               application_.isActiveWindow();
    }
    void click(const PanelRect& frame) override
    {
        const QPoint middle = rectOf(frame).center().toPoint();
        run(QStringLiteral("xdotool mousemove %1 %2 click 1").arg(middle.x()).arg(middle.y()));
    }
    [[nodiscard]] int clicksOfTheApplication() override { return application_.clicks; }
    [[nodiscard]] bool raiseTheApplication() override
    {
        application_.raise();
        application_.activateWindow();
        runFor(std::chrono::milliseconds(200));
        return hasWindowManager();
    }
    [[nodiscard]] QByteArray picture(const PanelRect& frame) override
    {
        const QImage image = screenshot(rectOf(frame).toRect());
        return QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
    }

private:
    std::unique_ptr<HUDContent> makeContent(HUDModel& model)
    {
        auto view = std::make_unique<HUDView>(model);
        view->setPalette(QPalette(Qt::white));
        view_ = view.get();
        return view;
    }

    Underlay application_;
    QPointer<HUDView> view_;
    X11HUDPanelFactory panels_{[this](HUDModel& model) { return makeContent(model); }};
};

INSTANTIATE_TEST_SUITE_P(Adapters, HUDPanelSuite, over<X11HUDPanelDriver>("X11"));
INSTANTIATE_TEST_SUITE_P(Adapters, HUDPanelDesktopSuite, over<X11HUDPanelDriver>("X11"));

} // namespace
} // namespace corvandi::testing
