#include "hud_view/hud_painting.h"

#include "hud_view/hud_background.h"
#include "symbols/symbol_pixmap.h"

#include <QConicalGradient>
#include <QTextOption>

namespace corvandi {
namespace {

/// A spinner of the small size is 16 points wide, and here it is scaled down to seven tenths.
constexpr qreal spinnerDiameter = 16 * 0.7;
constexpr qreal spinnerStroke = 1.75;
constexpr qreal spinnerTail = 0.12;

/// The discs of the symbols fill seven eighths of their pictures.
constexpr qreal pictureOfSymbol = 8.0 / 7;

QRectF scaledAround(const QRectF& frame, qreal scale)
{
    QRectF scaled(QPointF(), frame.size() * scale);
    scaled.moveCenter(frame.center());
    return scaled;
}

void paintDot(QPainter& painter, const HudPart& part, const HudColors& colors)
{
    const DotPose pose = dotPose(part.age);
    QColor color = colors.recording;
    color.setAlphaF(static_cast<float>(pose.opacity));
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(scaledAround(part.layout.symbol, pose.scale));
}

/// A ring that is dense at its head and fades along its tail.
void paintSpinner(QPainter& painter, const HudPart& part, const HudColors& colors)
{
    const QPointF center = part.layout.symbol.center();
    const qreal radius = (spinnerDiameter - spinnerStroke) / 2;
    // Angles count anticlockwise from three o'clock; the spinner turns clockwise from the top.
    const qreal head = 90 - 360 * spinnerTurn(part.age);
    QColor tail = colors.secondary;
    tail.setAlphaF(static_cast<float>(tail.alphaF() * spinnerTail));
    QConicalGradient gradient(center, head);
    gradient.setColorAt(0, colors.secondary);
    gradient.setColorAt(1, tail);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(gradient, spinnerStroke));
    painter.drawEllipse(center, radius, radius);
}

void paintSymbol(QPainter& painter, const HudPart& part, Symbol symbol, const QColor& color)
{
    const QRectF frame = scaledAround(part.layout.symbol, pictureOfSymbol);
    const QSize size = frame.size().toSize();
    const qreal scale = painter.device()->devicePixelRatioF();
    painter.drawPixmap(frame.topLeft(), symbolPixmap(symbol, size, color, scale));
}

void paintWaveform(QPainter& painter, const HudPart& part, const HudColors& colors)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.accent);
    for (size_t i = 0; i < part.bars.size(); ++i) {
        const QRectF bar = barFrame(part.layout.waveform, i, part.bars[i]);
        painter.drawRoundedRect(bar, capsuleRadius(bar), capsuleRadius(bar));
    }
}

void paintPictures(QPainter& painter, const HudPart& part, const HudColors& colors)
{
    switch (part.face.state) {
    case HUDState::recording:
        paintDot(painter, part, colors);
        return paintWaveform(painter, part, colors);
    case HUDState::processing:
        return paintSpinner(painter, part, colors);
    case HUDState::notice:
        return paintSymbol(painter, part, Symbol::checkmarkCircleFill, colors.notice);
    case HUDState::error:
        return paintSymbol(painter, part, Symbol::exclamationmarkCircleFill, colors.error);
    }
}

/// Draws the line with a cell of the same width for every digit.
void paintSteadily(QPainter& painter, const HudLine& line)
{
    const QFontMetricsF font(painter.font());
    const qreal baseline = line.frame.top() + font.ascent();
    qreal x = line.frame.left();
    for (const QChar character : line.text) {
        const qreal width = font.horizontalAdvance(character);
        const qreal cell = character.isDigit() ? digitCell(font) : width;
        painter.drawText(QPointF(x + (cell - width) / 2, baseline), character);
        x += cell;
    }
}

/// Lines of a text from right to left begin on the right.
void paintLine(QPainter& painter, const HudLine& line, Qt::LayoutDirection direction)
{
    const auto side = direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    QTextOption option(side | Qt::AlignAbsolute | Qt::AlignVCenter);
    option.setTextDirection(direction);
    option.setWrapMode(QTextOption::NoWrap);
    painter.drawText(line.frame, line.text, option);
}

void paintText(QPainter& painter, const HudPart& part, const HudColors& colors, const QRectF& dirty)
{
    const HUDState state = part.face.state;
    const bool isMessage = state == HUDState::notice || state == HUDState::error;
    const auto direction = part.face.text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
    painter.setPen(isMessage ? colors.primary : colors.secondary);
    for (const HudLine& line : part.layout.lines) {
        if (!line.frame.intersects(dirty))
            continue;
        if (state == HUDState::recording)
            paintSteadily(painter, line);
        else
            paintLine(painter, line, direction);
    }
}

} // namespace

void paintPart(QPainter& painter, const HudPart& part, const HudColors& colors, const QRectF& dirty)
{
    painter.setOpacity(part.opacity);
    paintPictures(painter, part, colors);
    paintText(painter, part, colors, dirty);
    painter.setOpacity(1);
}

} // namespace corvandi
