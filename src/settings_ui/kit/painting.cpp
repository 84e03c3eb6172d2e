#include "settings_ui/kit/painting.h"

#include "settings_ui/kit/metrics.h"

namespace corvandi::kit {

void paintPanel(QPainter& painter, const QRectF& frame, qreal radius, const QColor& fill, const QColor& edge)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(edge.alpha() == 0 ? QPen(Qt::NoPen) : QPen(edge, 1));
    painter.setBrush(fill);
    const qreal inset = edge.alpha() == 0 ? 0 : 0.5;
    painter.drawRoundedRect(frame.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    painter.restore();
}

bool showsFocus(const QWidget& widget)
{
    return widget.hasFocus() && widget.window()->testAttribute(Qt::WA_KeyboardFocusChange);
}

void paintFocusRing(QPainter& painter, const QRectF& frame, qreal radius, const QColor& accent)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(accent, metrics::focusRingWidth));
    const qreal inset = metrics::focusRingWidth / 2.0;
    painter.drawRoundedRect(frame.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    painter.restore();
}

QFont scaledFont(const QFont& font, qreal factor, QFont::Weight weight)
{
    QFont scaled = font;
    if (font.pointSizeF() > 0)
        scaled.setPointSizeF(font.pointSizeF() * factor);
    else
        scaled.setPixelSize(qRound(font.pixelSize() * factor));
    scaled.setWeight(weight);
    return scaled;
}

} // namespace corvandi::kit
