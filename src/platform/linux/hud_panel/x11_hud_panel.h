#pragma once

#include "hud/hud_panel.h"
#include "hud_view/hud_view.h"

#include <QVariantAnimation>

namespace corvandi {

/// The HUD's surface on X11: a window that the window manager leaves alone (so it has no frame, is in
/// no task list and no pager, on every workspace, never focused and above all others), that lets the
/// mouse through, and that shows a HUD view.
///
/// With a compositor the window is translucent, casts a shadow and fades. Without one it is cut out
/// along the capsule and simply visible. Which of both it is is decided whenever the panel is ordered
/// front, as compositors come and go.
///
/// The window is as large as the panel's frame and the room for the shadow; a message that does not fit
/// there widens it on both sides, up to the width of the screen.
///
/// Thread: main thread only. The model outlives the panel.
class X11HudPanel : public HUDPanel {
public:
    explicit X11HudPanel(HUDModel& model);

    [[nodiscard]] std::optional<PanelRect> mainScreenVisibleFrame() const override;
    void setFrame(const PanelRect& frame) override;
    void setAlpha(double alpha) override;
    void orderFront() override;
    void fadeTo(double alpha, MainQueue::Duration duration) override;
    void orderOut() override;

    [[nodiscard]] HudView& view() { return view_; }

private:
    void place();
    void adaptToDesktop();
    void updateMask();

    HudView view_;
    /// Where the panel was told to stand.
    QRectF frame_;
    QVariantAnimation fade_;
    bool isComposited_ = false;
};

/// Makes panels on X11.
class X11HudPanels : public HUDPanels {
public:
    [[nodiscard]] std::unique_ptr<HUDPanel> create(HUDModel& model) override;
};

} // namespace corvandi
