#include "symbols/symbol.h"

namespace corvandi {

QString symbolName(Symbol symbol)
{
    switch (symbol) {
    case Symbol::gearshape:
        return QStringLiteral("gearshape");
    case Symbol::characterBookClosed:
        return QStringLiteral("character_book_closed");
    case Symbol::clock:
        return QStringLiteral("clock");
    case Symbol::lockShield:
        return QStringLiteral("lock_shield");
    case Symbol::plus:
        return QStringLiteral("plus");
    case Symbol::trash:
        return QStringLiteral("trash");
    case Symbol::docOnDoc:
        return QStringLiteral("doc_on_doc");
    case Symbol::arrowRight:
        return QStringLiteral("arrow_right");
    case Symbol::magnifyingglass:
        return QStringLiteral("magnifyingglass");
    case Symbol::checkmarkCircleFill:
        return QStringLiteral("checkmark_circle_fill");
    case Symbol::exclamationmarkCircleFill:
        return QStringLiteral("exclamationmark_circle_fill");
    case Symbol::xmarkCircleFill:
        return QStringLiteral("xmark_circle_fill");
    case Symbol::micFill:
        return QStringLiteral("mic_fill");
    case Symbol::chevronRight:
        return QStringLiteral("chevron_right");
    case Symbol::chevronDown:
        return QStringLiteral("chevron_down");
    case Symbol::corvandi:
        return QStringLiteral("corvandi");
    }
    return {};
}

} // namespace corvandi
