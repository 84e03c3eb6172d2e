#include "views/kit/list_row.h"

#include "views/kit/style.h"

#include <QCoreApplication>
#include <QPainter>

namespace corvandi::kit {
namespace {

/// Between the row's edge and its tint, which so keeps off the card's round corners.
constexpr int tintInset = 3;
constexpr qreal tintRadius = metrics::cardRadius - tintInset;
constexpr float tintShare = 0.14F;

} // namespace

ListRow::ListRow(QWidget* parent)
    : QWidget(parent)
    , stops_{this}
{
    setFocusPolicy(Qt::ClickFocus);
}

QString ListRow::spokenPosition() const
{
    return QCoreApplication::translate("VirtualList", "%1 of %2").arg(index_ + 1).arg(count_);
}

void ListRow::addControl(QWidget& control)
{
    control.setFocusPolicy(Qt::ClickFocus);
    stops_.push_back(&control);
}

void ListRow::setTabStop(bool isTabStop)
{
    for (QWidget* stop : stops_)
        stop->setFocusPolicy(isTabStop ? Qt::StrongFocus : Qt::ClickFocus);
}

void ListRow::setPlace(std::size_t index, std::size_t count)
{
    index_ = index;
    count_ = count;
}

QVariant ListRow::inputMethodQuery(Qt::InputMethodQuery query) const
{
    // A scroll area brings this into view: of a row that is higher than the area, the beginning.
    if (query == Qt::ImCursorRectangle)
        return QRect(0, 0, width(), qMin(height(), metrics::rowHeight));
    return QWidget::inputMethodQuery(query);
}

void ListRow::paintEvent(QPaintEvent*)
{
    if (!hasFocus())
        return;
    const Colors colors = Colors::of(*this);
    const QRectF frame = QRectF(rect()).adjusted(tintInset, tintInset, -tintInset, -tintInset);
    QPainter painter(this);
    paintPanel(painter, frame, tintRadius, mixed(colors.card, colors.accent, tintShare));
    if (showsFocus(*this))
        paintFocusRing(painter, frame, tintRadius, colors.accent);
}

} // namespace corvandi::kit
