#pragma once

#include "symbols/symbol.h"

#include <QColor>
#include <QImage>
#include <QPixmap>
#include <QSize>

namespace corvandi {

/// The symbol in one colour, `points` large, at `scale` device pixels to the point: the largest square
/// that fits, centred. The lines of small symbols are drawn somewhat heavier than those of large ones, so
/// that they look alike side by side.
///
/// Thread: any thread.
[[nodiscard]] QImage drawSymbol(Symbol symbol, const QSize& points, const QColor& color, qreal scale);

/// The same for the screen; kept for the next time. Thread: main thread only.
[[nodiscard]] QPixmap symbolPixmap(Symbol symbol, const QSize& points, const QColor& color, qreal scale);

} // namespace corvandi
