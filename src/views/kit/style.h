#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QWidget>

/// Lengths of the windows, in points.
namespace corvandi::kit::metrics {

/// Between the edge of a pane and its content.
inline constexpr int paneMargin = 24;
/// Wider columns of text and controls are hard to read across.
inline constexpr int widestColumn = 640;
inline constexpr int sectionSpacing = 18;
/// Between a section's header, its card and its footer.
inline constexpr int headerSpacing = 8;

inline constexpr int cardRadius = 10;
/// Between a card's edge and what it holds.
inline constexpr int rowMargin = 14;
inline constexpr int rowPadding = 8;
inline constexpr int rowHeight = 44;
/// Between a label and its control.
inline constexpr int rowSpacing = 16;
inline constexpr int captionSpacing = 4;

inline constexpr int controlRadius = 6;
inline constexpr int controlHeight = 30;
inline constexpr int controlPadding = 12;
inline constexpr int iconSize = 16;
inline constexpr int focusRingWidth = 2;

} // namespace corvandi::kit::metrics

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

/// A filled rectangle with round corners; its edge, one point wide, lies inside of `frame`.
void paintPanel(QPainter& painter, const QRectF& frame, qreal radius, const QColor& fill,
                const QColor& edge = Qt::transparent);

/// Whether the widget has the focus and the user moves it by keyboard: a click needs no ring.
[[nodiscard]] bool showsFocus(const QWidget& widget);
/// The ring around the inner edge of `frame`.
void paintFocusRing(QPainter& painter, const QRectF& frame, qreal radius, const QColor& accent);

/// Steps of a font away from the program's own: multiplies its size.
[[nodiscard]] QFont scaledFont(const QFont& font, qreal factor, QFont::Weight weight = QFont::Normal);

} // namespace corvandi::kit
