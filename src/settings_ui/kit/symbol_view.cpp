#include "settings_ui/kit/symbol_view.h"

#include "settings_ui/kit/colors.h"
#include "symbols/symbol_pixmap.h"

#include <QPainter>

namespace corvandi::kit {
namespace {

QColor colorOf(SymbolTint tint, const Colors& colors)
{
    switch (tint) {
    case SymbolTint::text:
        return colors.text;
    case SymbolTint::secondary:
        return colors.secondaryText;
    case SymbolTint::accent:
        return colors.accent;
    case SymbolTint::positive:
        return colors.positive;
    case SymbolTint::destructive:
        return colors.destructive;
    }
    return colors.text;
}

} // namespace

SymbolView::SymbolView(Symbol symbol, int points, SymbolTint tint, QWidget* parent)
    : QWidget(parent)
    , symbol_(symbol)
    , points_(points)
    , tint_(tint)
{
    setFixedSize(points, points);
}

void SymbolView::paintEvent(QPaintEvent*)
{
    const Colors colors = Colors::of(*this);
    const QColor color = isEnabled() ? colorOf(tint_, colors) : colors.disabledText;
    QPainter(this).drawPixmap(rect(), symbolPixmap(symbol_, size(), color, devicePixelRatioF()));
}

} // namespace corvandi::kit
