#pragma once

#include "base/main_queue.h"

#include <memory>
#include <optional>

namespace corvandi {

class HUDModel;

/// A rectangle of the desktop in points: origin at the top left, y grows downwards.
struct PanelRect {
    double x;
    double y;
    double width;
    double height;

    friend bool operator==(const PanelRect&, const PanelRect&) = default;
};

/// The surface on which the HUD is drawn: always on top, on every workspace, never in a task list,
/// never focused, transparent to the mouse. It draws the model that it was created for by itself.
/// While it is ordered out nothing of it runs.
///
/// Thread: main thread only.
class HUDPanel {
public:
    virtual ~HUDPanel() = default;

    /// The part of the main screen that bars and docks leave free; nothing when there is no screen.
    [[nodiscard]] virtual std::optional<PanelRect> mainScreenVisibleFrame() const = 0;
    virtual void setFrame(const PanelRect& frame) = 0;
    /// Opacity, 0...1; ends a fade that is under way.
    virtual void setAlpha(double alpha) = 0;
    /// Shows the panel above everything without activating anything.
    virtual void orderFront() = 0;
    /// Changes the opacity to `alpha` over `duration`, quick at first and slow at the end. On a desktop
    /// that can't show translucency the panel is simply visible.
    virtual void fadeTo(double alpha, MainQueue::Duration duration) = 0;
    /// Hides the panel at once.
    virtual void orderOut() = 0;
};

/// Makes the panel when it is needed for the first time. The model outlives the panel.
class HUDPanelFactory {
public:
    virtual ~HUDPanelFactory() = default;
    [[nodiscard]] virtual std::unique_ptr<HUDPanel> create(HUDModel& model) = 0;
};

} // namespace corvandi
