#pragma once

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

} // namespace corvandi
