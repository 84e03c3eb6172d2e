#pragma once

#include <QColor>
#include <QWidget>

namespace corvandi::kit {

/// The colours of the windows, all derived from the palette that the desktop or the program has set.
struct Colors {
    QColor window;
    /// Rounded sections; lighter than the window in light and in dark.
    QColor card;
    QColor cardEdge;
    /// Lines between the rows of a card and between the parts of a window.
    QColor hairline;
    QColor text;
    /// Captions, footers, descriptions. At least 4.5 to 1 on windows and cards in the program's palettes.
    QColor secondaryText;
    QColor disabledText;
    QColor accent;
    QColor onAccent;
    /// Something is granted or has succeeded.
    QColor positive;
    /// What cannot be undone, and failures.
    QColor destructive;
    QColor control;
    QColor controlEdge;
    /// Laid over whatever the pointer is on, or is pressing.
    QColor hover;
    QColor pressed;
    /// The track of a switch that is off.
    QColor track;

    [[nodiscard]] static Colors of(const QPalette& palette);
    [[nodiscard]] static Colors of(const QWidget& widget) { return of(widget.palette()); }
};

/// A colour between two: `share` of the second, 0...1.
[[nodiscard]] QColor mixed(const QColor& one, const QColor& other, float share);

} // namespace corvandi::kit
