#pragma once

#include "hud_view/hud_animation.h"
#include "hud_view/hud_colors.h"

#include <QPainter>

namespace corvandi {

/// Draws a face around the painter's origin, as far as it reaches into `dirty`. The painter has the HUD's
/// font and is set to antialiasing.
void paintPart(QPainter& painter, const HudPart& part, const HudColors& colors, const QRectF& dirty);

} // namespace corvandi
