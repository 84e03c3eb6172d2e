#pragma once

#include "ports/appearance.h"

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

/// Gives the application the colours that the desktop wants, now and after every change. While the theme
/// of the desktop has them itself, the application's palette is left to the theme. The widgets hear of it
/// from the event loop.
///
/// Thread: main thread only, after the application object of the toolkit. The appearance outlives it.
class AppearanceFollower {
public:
    explicit AppearanceFollower(Appearance& appearance);

private:
    void follow();

    Appearance& appearance_;
    std::unique_ptr<Registration> registration_;
};

} // namespace corvandi
