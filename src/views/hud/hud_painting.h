#pragma once

#include "ports/hud_content.h"
#include "views/hud/hud_animation.h"

#include <QColor>
#include <QPainter>
#include <QPalette>

namespace corvandi {

/// The colours of the HUD, light or dark as the palette's windows are.
struct HUDColors {
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

    [[nodiscard]] static HUDColors from(const QPalette& palette, HUDBackdrop backdrop);

    friend bool operator==(const HUDColors&, const HUDColors&) = default;
};

/// Draws a face around the painter's origin, as far as it reaches into `dirty`. The painter has the HUD's
/// font and is set to antialiasing.
void paintPart(QPainter& painter, const HUDPart& part, const HUDColors& colors, const QRectF& dirty);

} // namespace corvandi
