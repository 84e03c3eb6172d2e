#pragma once

#include <QColor>
#include <QPalette>

namespace corvandi {

/// What lies behind the HUD: a desktop that shows through, or nothing that could.
enum class HudBackdrop { translucent, opaque };

/// The colours of the HUD, light or dark as the palette's windows are.
struct HudColors {
    /// The capsule from top to bottom, its outline, and the light that its glass catches along the inner
    /// edge, from top to bottom.
    QColor fillTop;
    QColor fillBottom;
    QColor outline;
    QColor rimTop;
    QColor rimBottom;
    QColor primary;
    QColor secondary;
    QColor accent;
    QColor recording;
    QColor notice;
    QColor error;

    [[nodiscard]] static HudColors from(const QPalette& palette, HudBackdrop backdrop);

    friend bool operator==(const HudColors&, const HudColors&) = default;
};

} // namespace corvandi
