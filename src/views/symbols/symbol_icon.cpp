#include "views/symbols/symbol_icon.h"

#include "views/symbols/symbol.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>

#include <variant>

namespace corvandi {
namespace {

/// Where an icon's colour comes from when the icon is in its normal state.
using SymbolColor = std::variant<QPalette::ColorRole, QColor>;

QColor colorFor(QIcon::Mode mode, const SymbolColor& normal)
{
    const QPalette palette = QGuiApplication::palette();
    if (mode == QIcon::Selected)
        return palette.color(QPalette::HighlightedText);
    const auto* role = std::get_if<QPalette::ColorRole>(&normal);
    if (mode == QIcon::Disabled)
        return palette.color(QPalette::Disabled, role ? *role : QPalette::WindowText);
    return role ? palette.color(QPalette::Active, *role) : std::get<QColor>(normal);
}

class SymbolIconEngine : public QIconEngine {
public:
    SymbolIconEngine(Symbol symbol, SymbolColor color)
        : symbol_(symbol)
        , color_(color)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const qreal scale = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, symbolPixmap(symbol_, rect.size(), colorFor(mode, color_), scale));
    }
    /// `size` counts device pixels here.
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override
    {
        QImage image = drawSymbol(symbol_, size / scale, colorFor(mode, color_), scale);
        return QPixmap::fromImage(std::move(image));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override
    {
        return symbolPixmap(symbol_, size, colorFor(mode, color_), 1);
    }
    QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override { return size; }
    bool isNull() override { return false; }
    QString key() const override { return QStringLiteral("corvandi-symbol"); }
    QIconEngine* clone() const override { return new SymbolIconEngine(*this); }

private:
    Symbol symbol_;
    SymbolColor color_;
};

} // namespace

QIcon symbolIcon(Symbol symbol, QPalette::ColorRole role)
{
    return QIcon(std::make_unique<SymbolIconEngine>(symbol, role).release());
}

QIcon symbolIcon(Symbol symbol, const QColor& color)
{
    return QIcon(std::make_unique<SymbolIconEngine>(symbol, color).release());
}

} // namespace corvandi
