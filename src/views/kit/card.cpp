#include "views/kit/card.h"

#include "views/kit/child.h"
#include "views/kit/style.h"
#include "views/kit/text_label.h"
#include "views/symbols/symbol.h"

#include <QPainter>
#include <QVBoxLayout>

namespace corvandi::kit {
namespace {

/// The card's own edge.
constexpr int edge = 1;

} // namespace

Card::Card(QWidget* parent)
    : QWidget(parent)
    , layout_(makeLayout<QVBoxLayout>(*this, {edge, edge, edge, edge}, 1))
{
    // Fill only as high as the rows are.
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
}

void Card::insertRow(int index, QWidget& row)
{
    layout_.insertWidget(index, &row);
}

QWidget* Card::row(int index) const
{
    const QLayoutItem* item = layout_.itemAt(index);
    return item ? item->widget() : nullptr;
}

void Card::paintEvent(QPaintEvent*)
{
    const Colors colors = Colors::of(*this);
    QPainter painter(this);
    paintPanel(painter, QRectF(rect()), metrics::cardRadius, colors.card, colors.cardEdge);
    bool isFirst = true;
    for (int index = 0; index < rowCount(); ++index) {
        const QWidget* shown = row(index);
        if (!shown || shown->isHidden())
            continue;
        if (!isFirst) {
            const QRect line(metrics::rowMargin, shown->y() - 1, width() - 2 * metrics::rowMargin, 1);
            painter.fillRect(line, colors.hairline);
        }
        isFirst = false;
    }
}

namespace {

QColor colorOf(SymbolTint tint, const Colors& colors)
{
    switch (tint) {
    case SymbolTint::secondary:
        return colors.secondaryText;
    case SymbolTint::positive:
        return colors.positive;
    }
    return colors.secondaryText;
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

namespace {

constexpr int symbolSize = 44;
constexpr int spacing = 6;
constexpr int symbolSpacing = 8;

} // namespace

EmptyState::EmptyState(Symbol symbol, const QString& title, const QString& description, QWidget* parent)
    : QWidget(parent)
{
    constexpr int margin = metrics::paneMargin;
    auto& column = makeLayout<QVBoxLayout>(*this, {margin, margin, margin, margin}, spacing);
    column.addStretch(1);
    column.addWidget(&makeChild<SymbolView>(*this, symbol, symbolSize, SymbolTint::secondary), 0,
                     Qt::AlignHCenter);
    column.addSpacing(symbolSpacing);
    for (auto [text, style] :
         {std::pair(title, TextStyle::title), std::pair(description, TextStyle::secondary)}) {
        if (text.isEmpty())
            continue;
        auto& label = makeChild<TextLabel>(*this, text, style);
        label.setAlignment(Qt::AlignCenter);
        column.addWidget(&label);
    }
    column.addStretch(1);
}

} // namespace corvandi::kit
