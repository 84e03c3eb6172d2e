#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QWidget>

namespace corvandi::kit {

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
