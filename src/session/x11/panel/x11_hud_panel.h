#pragma once

#include "ports/hud_content.h"
#include "ports/hud_panel.h"

#include <QRectF>
#include <QVariantAnimation>

class QWidget;

namespace corvandi {

/// Whether the X11 desktop of the application can show translucency now. Two round trips to the X
/// server; false where there is none. Thread: main thread only.
[[nodiscard]] bool isCompositorRunning();

/// Has the X server keep the picture in the middle of the window when that is resized, until the window
/// draws itself anew: without this, a window that grows or shrinks on both sides shows its old picture in
/// the wrong place for one frame. Does nothing on another platform than X11.
///
/// Makes the native window if there is none yet. Thread: main thread only.
void keepPictureInTheMiddle(QWidget& window);

/// The HUD's surface on X11: a window that the window manager leaves alone (so it has no frame, is in
/// no task list and no pager, on every workspace, never focused and above all others), that lets the
/// mouse through, and that shows the HUD's content.
///
/// With a compositor the window is translucent, casts a shadow and fades. Without one it is cut out
/// along the capsule and simply visible. Which of both it is is decided whenever the panel is ordered
/// front, as compositors come and go.
///
/// The window is as large as the panel's frame and the room for the shadow; a message that does not fit
/// there widens it on both sides, up to the width of the screen.
///
/// Thread: main thread only.
class X11HUDPanel : public HUDPanel {
public:
    explicit X11HUDPanel(std::unique_ptr<HUDContent> content);

    [[nodiscard]] std::optional<PanelRect> mainScreenVisibleFrame() const override;
    void setFrame(const PanelRect& frame) override;
    void setAlpha(double alpha) override;
    void orderFront() override;
    void fadeTo(double alpha, MainQueue::Duration duration) override;
    void orderOut() override;

private:
    void place();
    void adaptToDesktop();
    void updateMask();

    std::unique_ptr<HUDContent> content_;
    QWidget& window_;
    /// Where the panel was told to stand.
    QRectF frame_;
    QVariantAnimation fade_;
    bool isComposited_ = false;
};

/// Makes panels on X11.
class X11HUDPanelFactory : public HUDPanelFactory {
public:
    explicit X11HUDPanelFactory(HUDContentFactory makeContent)
        : makeContent_(std::move(makeContent))
    {
    }

    [[nodiscard]] std::unique_ptr<HUDPanel> create(HUDModel& model) override;

private:
    HUDContentFactory makeContent_;
};

} // namespace corvandi
