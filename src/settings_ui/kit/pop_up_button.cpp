#include "settings_ui/kit/pop_up_button.h"

#include "settings_ui/kit/colors.h"
#include "settings_ui/kit/metrics.h"
#include "settings_ui/kit/painting.h"
#include "symbols/symbol_pixmap.h"

#include <QPainter>
#include <QWheelEvent>

namespace corvandi::kit {
namespace {

constexpr int chevronSize = 12;
constexpr int chevronGap = 8;
constexpr int chevronMargin = 9;
constexpr int iconGap = 8;
constexpr int narrowest = 96;
/// Longer choices are cut off with an ellipsis, if the layout leaves no more.
constexpr int narrowestWhenCut = 64;
constexpr int trailing = chevronGap + chevronSize + chevronMargin;

} // namespace

PopUpButton::PopUpButton(QWidget* parent)
    : QComboBox(parent)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setIconSize({metrics::iconSize, metrics::iconSize});
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    // Else the layout is not told that a longer choice has come.
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
}

QSize PopUpButton::sizeHint() const
{
    const QFontMetrics metrics(font());
    int widest = 0;
    for (int index = 0; index < count(); ++index) {
        const int icon = itemIcon(index).isNull() ? 0 : iconSize().width() + iconGap;
        widest = qMax(widest, icon + metrics.horizontalAdvance(itemText(index)));
    }
    // A pixel for the rounding of fractional text widths.
    const int width = metrics::controlPadding + widest + 1 + trailing;
    return {qMax(width, narrowest), qMax(metrics::controlHeight, metrics.height() + 12)};
}

QSize PopUpButton::minimumSizeHint() const
{
    return {qMin(sizeHint().width(), narrowestWhenCut), sizeHint().height()};
}

void PopUpButton::paintEvent(QPaintEvent*)
{
    const Colors colors = Colors::of(*this);
    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(0.5);
    const QRectF frame(rect());
    paintPanel(painter, frame, metrics::controlRadius, colors.control, colors.controlEdge);
    if (isEnabled() && underMouse())
        paintPanel(painter, frame, metrics::controlRadius, colors.hover);

    int left = metrics::controlPadding;
    if (const QIcon icon = itemIcon(currentIndex()); !icon.isNull()) {
        icon.paint(&painter, left, (height() - iconSize().height()) / 2, iconSize().width(),
                   iconSize().height());
        left += iconSize().width() + iconGap;
    }
    const QRect place = rect().adjusted(left, 0, -trailing, 0);
    painter.setPen(colors.text);
    painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft,
                     QFontMetrics(font()).elidedText(currentText(), Qt::ElideRight, place.width()));

    const QSize size(chevronSize, chevronSize);
    const QRect chevron(QPoint(width() - chevronMargin - chevronSize, (height() - chevronSize) / 2), size);
    painter.drawPixmap(chevron,
                       symbolPixmap(Symbol::chevronDown, size, colors.secondaryText, devicePixelRatioF()));
    if (showsFocus(*this))
        paintFocusRing(painter, frame, metrics::controlRadius, colors.accent);
}

void PopUpButton::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}

} // namespace corvandi::kit
