#include "menu_view/menu_bar_pictures.h"

#include "symbols/symbol_pixmap.h"

#include <QPainter>

#include <algorithm>
#include <stdexcept>

namespace corvandi {
namespace {

/// The symbols' drawings are square; their own size does not matter, they are drawn at any.
constexpr QSizeF drawingSize(24, 24);

MenuBarImage imageOf(Symbol symbol)
{
    MenuBarImage image;
    image.size = drawingSize;
    image.paint = [symbol](QPainter& painter, const QRectF& area, const QColor& color) {
        const qreal scale = painter.device()->devicePixelRatioF();
        painter.drawImage(area, drawSymbol(symbol, area.size().toSize(), color, scale));
    };
    return image;
}

} // namespace

std::optional<MenuBarImage> programPicture()
{
    try {
        // Draws once, to find out whether it is there.
        static_cast<void>(drawSymbol(Symbol::corvandi, QSize(1, 1), Qt::black, 1));
        return imageOf(Symbol::corvandi);
    } catch (const std::logic_error&) {
        return std::nullopt;
    }
}

std::optional<MenuBarImage> symbolPicture(const QString& name, const QString& description)
{
    // The names of symbols have dots, those of files don't.
    const QString fileName = QString(name).replace(QLatin1Char('.'), QLatin1Char('_'));
    const auto* symbol = std::find_if(std::begin(allSymbols), std::end(allSymbols),
                                      [&](Symbol candidate) { return symbolName(candidate) == fileName; });
    if (symbol == std::end(allSymbols))
        return std::nullopt;
    MenuBarImage image = imageOf(*symbol);
    image.accessibilityDescription = description;
    return image;
}

} // namespace corvandi
