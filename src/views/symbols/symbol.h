#pragma once

#include <QColor>
#include <QIcon>
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
    micFill,
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
    Symbol::micFill,
    Symbol::chevronDown,
    Symbol::corvandi,
};

/// The file name of the symbol's drawing, without folder and suffix.
[[nodiscard]] QString symbolName(Symbol symbol);

/// The symbol in one colour, `points` large, at `scale` device pixels to the point: the largest square
/// that fits, centred. The lines of small symbols are drawn somewhat heavier than those of large ones, so
/// that they look alike side by side. Throws std::logic_error when the drawing is not built in.
///
/// Thread: any thread.
[[nodiscard]] QImage drawSymbol(Symbol symbol, const QSize& points, const QColor& color, qreal scale);

/// The same for the screen; kept for the next time. Thread: main thread only.
[[nodiscard]] QPixmap symbolPixmap(Symbol symbol, const QSize& points, const QColor& color, qreal scale);

/// The application's icon in its own colours, sharp in every size. The same drawing is installed for the
/// desktop under the application's identifier. Its one-colour form for trays is a symbol.
///
/// Thread: main thread only.
[[nodiscard]] QIcon applicationIcon();

} // namespace corvandi
