#include "hud_view/hud_symbols.h"

#include <QEasingCurve>
#include <QPainterPath>
#include <QPen>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

/// The dot grows, and shrinks again, in this time.
constexpr SymbolAge pulse = 700ms;
constexpr qreal restingScale = 0.62;
constexpr qreal restingOpacity = 0.55;

constexpr SymbolAge spinnerTurn = 900ms;
constexpr qreal spinnerStroke = 1.8;
/// Qt measures arcs in sixteenths of a degree.
constexpr int fullCircle = 360 * 16;
constexpr int spinnerArc = 100 * 16;
constexpr qreal spinnerTrackOpacity = 0.28;

/// The share of `period` that has passed since it last began, 0...1.
qreal phase(SymbolAge age, SymbolAge period)
{
    return static_cast<qreal>(age.count() % period.count()) / static_cast<qreal>(period.count());
}

/// From 0 to 1 and back, gently at both ends.
qreal swing(SymbolAge age)
{
    const qreal way = phase(age, 2 * pulse) * 2;
    return QEasingCurve(QEasingCurve::InOutSine).valueForProgress(way <= 1 ? way : 2 - way);
}

void drawDisc(QPainter& painter, const QRectF& frame, const QColor& color)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(frame);
}

/// A point of the frame, given in hundredths of its size.
QPointF at(const QRectF& frame, qreal x, qreal y)
{
    return frame.topLeft() + QPointF(x / 100 * frame.width(), y / 100 * frame.height());
}

QPen roundPen(const QColor& color, qreal width)
{
    return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

} // namespace

void drawRecordingDot(QPainter& painter, const QRectF& frame, const QColor& color, SymbolAge age)
{
    const qreal grown = swing(age);
    const qreal scale = restingScale + (1 - restingScale) * grown;
    QColor shade = color;
    shade.setAlphaF(static_cast<float>(restingOpacity + (1 - restingOpacity) * grown));
    QRectF dot(QPointF(), frame.size() * scale);
    dot.moveCenter(frame.center());
    drawDisc(painter, dot, shade);
}

void drawSpinner(QPainter& painter, const QRectF& frame, const QColor& color, SymbolAge age)
{
    const QRectF ring = frame.adjusted(spinnerStroke, spinnerStroke, -spinnerStroke, -spinnerStroke);
    QColor track = color;
    track.setAlphaF(static_cast<float>(track.alphaF() * spinnerTrackOpacity));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(roundPen(track, spinnerStroke));
    painter.drawEllipse(ring);
    // Arcs run anticlockwise, the spinner does not; it begins at the top.
    const int start = fullCircle / 4 - static_cast<int>(phase(age, spinnerTurn) * fullCircle);
    painter.setPen(roundPen(color, spinnerStroke));
    painter.drawArc(ring, start, -spinnerArc);
}

void drawCheckmark(QPainter& painter, const QRectF& frame, const QColor& color, const QColor& mark)
{
    drawDisc(painter, frame, color);
    QPainterPath check(at(frame, 29, 53));
    check.lineTo(at(frame, 44, 68));
    check.lineTo(at(frame, 71, 35));
    painter.strokePath(check, roundPen(mark, frame.width() * 0.12));
}

void drawExclamationMark(QPainter& painter, const QRectF& frame, const QColor& color, const QColor& mark)
{
    drawDisc(painter, frame, color);
    painter.setPen(roundPen(mark, frame.width() * 0.13));
    painter.drawLine(at(frame, 50, 26), at(frame, 50, 55));
    painter.drawPoint(at(frame, 50, 74));
}

} // namespace corvandi
