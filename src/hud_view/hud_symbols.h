#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>

#include <chrono>

namespace corvandi {

/// How long a symbol has been on show: where its animation stands.
using SymbolAge = std::chrono::milliseconds;

/// A dot that grows and shrinks without end.
void drawRecordingDot(QPainter& painter, const QRectF& frame, const QColor& color, SymbolAge age);
/// A ring of which one part runs round.
void drawSpinner(QPainter& painter, const QRectF& frame, const QColor& color, SymbolAge age);
/// A filled circle with a check mark.
void drawCheckmark(QPainter& painter, const QRectF& frame, const QColor& color, const QColor& mark);
/// A filled circle with an exclamation mark.
void drawExclamationMark(QPainter& painter, const QRectF& frame, const QColor& color, const QColor& mark);

} // namespace corvandi
