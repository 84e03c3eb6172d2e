#include "settings_ui/kit/card.h"

#include "settings_ui/kit/child.h"
#include "settings_ui/kit/colors.h"
#include "settings_ui/kit/metrics.h"
#include "settings_ui/kit/painting.h"

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

} // namespace corvandi::kit
