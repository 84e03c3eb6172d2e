#include "settings_ui/kit/icon_button.h"

#include "settings_ui/kit/colors.h"
#include "settings_ui/kit/metrics.h"
#include "settings_ui/kit/painting.h"
#include "symbols/symbol_pixmap.h"

#include <QKeyEvent>
#include <QPainter>

namespace corvandi::kit {

IconButton::IconButton(Symbol symbol, const QString& name, IconButtonRole role, QWidget* parent)
    : QAbstractButton(parent)
    , symbol_(symbol)
    , role_(role)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(name);
    setToolTip(name);
}

void IconButton::setSymbol(Symbol symbol)
{
    symbol_ = symbol;
    update();
}

QSize IconButton::sizeHint() const
{
    return {side, side};
}

QColor IconButton::symbolColor() const
{
    const Colors colors = Colors::of(*this);
    if (!isEnabled())
        return colors.disabledText;
    const bool isNear = isDown() || underMouse() || showsFocus(*this);
    if (!isNear)
        return colors.secondaryText;
    return role_ == IconButtonRole::destructive ? colors.destructive : colors.text;
}

void IconButton::paintEvent(QPaintEvent*)
{
    const Colors colors = Colors::of(*this);
    QPainter painter(this);
    const QRectF frame(rect());
    if (isEnabled() && (isDown() || isChecked() || underMouse()))
        paintPanel(painter, frame, metrics::controlRadius,
                   isDown() || isChecked() ? colors.pressed : colors.hover);
    const QSize size(metrics::iconSize, metrics::iconSize);
    const QPoint corner((width() - size.width()) / 2, (height() - size.height()) / 2);
    painter.drawPixmap(QRect(corner, size), symbolPixmap(symbol_, size, symbolColor(), devicePixelRatioF()));
    if (showsFocus(*this))
        paintFocusRing(painter, frame, metrics::controlRadius, colors.accent);
}

void IconButton::keyPressEvent(QKeyEvent* event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat())
        return click();
    QAbstractButton::keyPressEvent(event);
}

} // namespace corvandi::kit
