#include "settings_ui/app_list_delegate.h"

#include "settings_ui/kit/colors.h"
#include "settings_ui/kit/painting.h"

#include <QPainter>

namespace corvandi {
namespace {

constexpr int rowHeight = 38;
/// Between the rows' tints and the edges of the list.
constexpr int inset = 4;
constexpr int padding = 8;
constexpr int iconGap = 10;
constexpr qreal radius = 6;
constexpr float tintShare = 0.24F;

} // namespace

AppListDelegate::AppListDelegate(AppIcons& icons, const QListWidget& list, QObject* parent)
    : QStyledItemDelegate(parent)
    , icons_(icons)
    , list_(list)
{
}

QSize AppListDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    return {0, qMax(rowHeight, QFontMetrics(option.font).height() + 14)};
}

void AppListDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const
{
    const kit::Colors colors = kit::Colors::of(list_);
    const QRect row = option.rect.adjusted(inset, 1, -inset, -1);
    const bool isSelected = option.state & QStyle::State_Selected;
    if (isSelected)
        kit::paintPanel(*painter, row, radius, kit::mixed(colors.card, colors.accent, tintShare));
    else if (option.state & QStyle::State_MouseOver)
        kit::paintPanel(*painter, row, radius, colors.hover);

    const QRect icon(row.left() + padding, row.top() + (row.height() - iconSize) / 2, iconSize, iconSize);
    icons_.icon(index.data(bundleIDRole).toString()).paint(painter, icon);
    const QRect place(icon.right() + 1 + iconGap, row.top(), row.right() - icon.right() - iconGap - padding,
                      row.height());
    painter->setFont(option.font);
    painter->setPen(colors.text);
    painter->drawText(
        place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight, place.width()));
    // When the list gets the focus without a choice, it makes a row the current one and selects none.
    if (index == list_.currentIndex() && kit::showsFocus(list_))
        kit::paintFocusRing(*painter, row, radius, colors.accent);
}

} // namespace corvandi
