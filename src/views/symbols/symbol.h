#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QPixmap>
#include <QSize>
#include <QString>

namespace corvandi {

/// The drawings of the user interface: one family in one line weight, each a template in one colour.
enum class Symbol {
    gearshape,
    characterBookClosed,
    clock,
    lockShield,
    plus,
    trash,
    docOnDoc,
    arrowRight,
    magnifyingglass,
    checkmarkCircleFill,
    exclamationmarkCircleFill,
    xmarkCircleFill,
    micFill,
    chevronRight,
    chevronDown,
    /// The application's own mark.
    corvandi,
};

/// Every symbol, in the order of the enumeration.
inline constexpr Symbol allSymbols[] = {
    Symbol::gearshape,
    Symbol::characterBookClosed,
    Symbol::clock,
    Symbol::lockShield,
    Symbol::plus,
    Symbol::trash,
    Symbol::docOnDoc,
    Symbol::arrowRight,
    Symbol::magnifyingglass,
    Symbol::checkmarkCircleFill,
    Symbol::exclamationmarkCircleFill,
    Symbol::xmarkCircleFill,
    Symbol::micFill,
    Symbol::chevronRight,
    Symbol::chevronDown,
    Symbol::corvandi,
};

/// The file name of the symbol's drawing, without folder and suffix.
[[nodiscard]] QString symbolName(Symbol symbol);

/// The SVG text of a drawing that is built into the program, by its name without suffix. Throws
/// std::logic_error when there is none.
[[nodiscard]] QByteArray drawingFile(const QString& name);

/// The symbol in one colour, `points` large, at `scale` device pixels to the point: the largest square
/// that fits, centred. The lines of small symbols are drawn somewhat heavier than those of large ones, so
/// that they look alike side by side.
///
/// Thread: any thread.
[[nodiscard]] QImage drawSymbol(Symbol symbol, const QSize& points, const QColor& color, qreal scale);

/// The same for the screen; kept for the next time. Thread: main thread only.
[[nodiscard]] QPixmap symbolPixmap(Symbol symbol, const QSize& points, const QColor& color, qreal scale);

} // namespace corvandi
