#include "views/hud/hud_painting.h"

#include "views/hud/hud_background.h"
#include "views/symbols/symbol.h"

#include <QConicalGradient>
#include <QTextOption>

namespace corvandi {
namespace {

constexpr float middleLightness = 0.5F;

HUDColors darkColors()
{
    return {
        .fillTop = QColor(54, 55, 61, 236),
        .fillBottom = QColor(36, 37, 42, 236),
        .outline = QColor(0, 0, 0, 96),
        .rimTop = QColor(255, 255, 255, 64),
        .rimBottom = QColor(255, 255, 255, 20),
        .primary = QColor(255, 255, 255, 235),
        .secondary = QColor(235, 235, 245, 170),
        .accent = {},
        .recording = QColor(255, 69, 58),
        .notice = QColor(48, 209, 88),
        .error = QColor(255, 159, 10),
    };
}

HUDColors lightColors()
{
    return {
        .fillTop = QColor(255, 255, 255, 242),
        .fillBottom = QColor(244, 244, 248, 238),
        .outline = QColor(0, 0, 0, 36),
        .rimTop = QColor(255, 255, 255, 255),
        .rimBottom = QColor(255, 255, 255, 90),
        .primary = QColor(0, 0, 0, 220),
        .secondary = QColor(40, 40, 48, 180),
        .accent = {},
        .recording = QColor(233, 46, 37),
        .notice = QColor(36, 160, 66),
        .error = QColor(226, 118, 0),
    };
}

} // namespace

HUDColors HUDColors::from(const QPalette& palette, HUDBackdrop backdrop)
{
    const bool isDark = palette.color(QPalette::Window).lightnessF() < middleLightness;
    HUDColors colors = isDark ? darkColors() : lightColors();
    colors.accent = palette.color(QPalette::Active, QPalette::Highlight);
    if (backdrop == HUDBackdrop::opaque) {
        colors.fillTop.setAlpha(255);
        colors.fillBottom.setAlpha(255);
    }
    return colors;
}

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

void paintDot(QPainter& painter, const HUDPart& part, const HUDColors& colors)
{
    const DotPose pose = dotPose(part.age);
    QColor color = colors.recording;
    color.setAlphaF(static_cast<float>(pose.opacity));
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(scaledAround(part.layout.symbol, pose.scale));
}

/// A ring that is dense at its head and fades along its tail.
void paintSpinner(QPainter& painter, const HUDPart& part, const HUDColors& colors)
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

void paintSymbol(QPainter& painter, const HUDPart& part, Symbol symbol, const QColor& color)
{
    const QRectF frame = scaledAround(part.layout.symbol, pictureOfSymbol);
    const QSize size = frame.size().toSize();
    const qreal scale = painter.device()->devicePixelRatioF();
    painter.drawPixmap(frame.topLeft(), symbolPixmap(symbol, size, color, scale));
}

void paintWaveform(QPainter& painter, const HUDPart& part, const HUDColors& colors)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.accent);
    for (size_t i = 0; i < part.bars.size(); ++i) {
        const QRectF bar = barFrame(part.layout.waveform, i, part.bars[i]);
        painter.drawRoundedRect(bar, capsuleRadius(bar), capsuleRadius(bar));
    }
}

void paintPictures(QPainter& painter, const HUDPart& part, const HUDColors& colors)
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
void paintSteadily(QPainter& painter, const HUDLine& line)
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
void paintLine(QPainter& painter, const HUDLine& line, Qt::LayoutDirection direction)
{
    const auto side = direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    QTextOption option(side | Qt::AlignAbsolute | Qt::AlignVCenter);
    option.setTextDirection(direction);
    option.setWrapMode(QTextOption::NoWrap);
    painter.drawText(line.frame, line.text, option);
}

void paintText(QPainter& painter, const HUDPart& part, const HUDColors& colors, const QRectF& dirty)
{
    const HUDState state = part.face.state;
    const bool isMessage = state == HUDState::notice || state == HUDState::error;
    const auto direction = part.face.text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
    painter.setPen(isMessage ? colors.primary : colors.secondary);
    for (const HUDLine& line : part.layout.lines) {
        if (!line.frame.intersects(dirty))
            continue;
        if (state == HUDState::recording)
            paintSteadily(painter, line);
        else
            paintLine(painter, line, direction);
    }
}

} // namespace

void paintPart(QPainter& painter, const HUDPart& part, const HUDColors& colors, const QRectF& dirty)
{
    painter.setOpacity(part.opacity);
    paintPictures(painter, part, colors);
    paintText(painter, part, colors, dirty);
    painter.setOpacity(1);
}

} // namespace corvandi
