#pragma once

#include "appearance/appearance.h"

#include <QColor>
#include <QPalette>

namespace corvandi {

/// Whether text in this palette's windows is light on dark.
[[nodiscard]] bool isDark(const QPalette& palette);

/// Complete palettes for a style that draws with the palette's colours alone; `accent` is the colour of
/// selections.
[[nodiscard]] QPalette lightPalette(const QColor& accent);
[[nodiscard]] QPalette darkPalette(const QColor& accent);

/// The palette to use when the desktop wants `scheme` and its own theme has brought `platform`: that one
/// itself if it is what the desktop wants, else one of ours with its accent colour.
[[nodiscard]] QPalette paletteFor(ColorScheme scheme, const QPalette& platform);

} // namespace corvandi
