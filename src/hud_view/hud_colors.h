#pragma once

#include <QColor>
#include <QPalette>

namespace corvandi {

/// What lies behind the HUD: a desktop that shows through, or nothing that could.
enum class HudBackdrop { translucent, opaque };

/// The colours of the HUD, light or dark as the palette's windows are.
struct HudColors {
    QColor fill;
    QColor edge;
    QColor primary;
    QColor secondary;
    QColor accent;
    QColor recording;
    QColor notice;
    QColor error;
    /// Drawn upon the symbols.
    QColor onSymbol;

    [[nodiscard]] static HudColors from(const QPalette& palette, HudBackdrop backdrop);
};

} // namespace corvandi
