#include "views/kit/style.h"

#include "views/appearance/appearance_follower.h"

namespace corvandi::kit {
namespace {

QColor translucent(QColor color, float opacity)
{
    color.setAlphaF(opacity);
    return color;
}

} // namespace

QColor mixed(const QColor& one, const QColor& other, float share)
{
    const auto mix = [share](float a, float b) { return a + (b - a) * share; };
    return QColor::fromRgbF(mix(one.redF(), other.redF()), mix(one.greenF(), other.greenF()),
                            mix(one.blueF(), other.blueF()));
}

Colors Colors::of(const QPalette& palette)
{
    const bool dark = isDark(palette);
    const QColor window = palette.color(QPalette::Active, QPalette::Window);
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);
    const QColor card = dark ? mixed(window, text, 0.055F) : palette.color(QPalette::Active, QPalette::Base);
    return {
        .window = window,
        .card = card,
        .cardEdge = mixed(window, text, dark ? 0.13F : 0.10F),
        .hairline = mixed(card, text, dark ? 0.13F : 0.10F),
        .text = text,
        .secondaryText = mixed(card, text, 0.66F),
        .disabledText = mixed(card, text, 0.42F),
        .accent = accent,
        .onAccent = palette.color(QPalette::Active, QPalette::HighlightedText),
        .positive = dark ? QColor(88, 204, 126) : QColor(28, 126, 60),
        .destructive = dark ? QColor(255, 122, 116) : QColor(196, 43, 38),
        .control = dark ? mixed(card, text, 0.12F) : card,
        .controlEdge = mixed(card, text, dark ? 0.24F : 0.20F),
        .hover = translucent(text, 0.05F),
        .pressed = translucent(text, 0.11F),
        .track = mixed(card, text, dark ? 0.34F : 0.30F),
    };
}

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
