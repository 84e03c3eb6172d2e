#pragma once

#include "hud/hud_model.h"

#include <QFontMetricsF>
#include <QRectF>

#include <vector>

namespace corvandi {

/// Where the parts of the HUD stand, in the coordinates of the area that they were laid out in. All
/// lengths are points, which are logical pixels.
struct HudLayout {
    /// The capsule around everything; its edges lie on whole points.
    QRectF pill;
    /// The recording dot, the spinner or the symbol.
    QRectF symbol;
    /// The elapsed time or the status line; empty when there is no text.
    QRectF text;
    /// The bars of the recording face.
    std::vector<QRectF> bars;
};

/// The width of one character cell in a text whose digits shall not jump when they change.
[[nodiscard]] qreal digitCell(const QFontMetricsF& font);
/// The width of such a text.
[[nodiscard]] qreal steadyWidth(const QFontMetricsF& font, const QString& text);
/// The status line of the model on a single line.
[[nodiscard]] QString singleLine(const QString& text);

/// Lays the face of `model` out around the centre of `area`; a line that is too long for the area's
/// width gets less room than it needs.
[[nodiscard]] HudLayout layOut(const HUDModel& model, const QFontMetricsF& font, const QRectF& area);

} // namespace corvandi
