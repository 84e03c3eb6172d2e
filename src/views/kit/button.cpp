#include "views/kit/button.h"

#include "views/kit/style.h"
#include "views/symbols/symbol.h"

#include <QKeyEvent>
#include <QPainter>

namespace corvandi::kit {
namespace {

constexpr int narrowest = 72;
constexpr qreal paleness = 0.5;

QColor textColor(ButtonRole role, const Colors& colors)
{
    switch (role) {
    case ButtonRole::standard:
        return colors.text;
    case ButtonRole::prominent:
        return colors.onAccent;
    case ButtonRole::destructive:
        return colors.destructive;
    }
    return colors.text;
}

void paintFrame(QPainter& painter, const QRectF& frame, ButtonRole role, const Colors& colors)
{
    switch (role) {
    case ButtonRole::standard:
    case ButtonRole::destructive:
        return paintPanel(painter, frame, metrics::controlRadius, colors.control, colors.controlEdge);
    case ButtonRole::prominent:
        return paintPanel(painter, frame, metrics::controlRadius, colors.accent);
    }
}

} // namespace

Button::Button(const QString& text, ButtonRole role, QWidget* parent)
    : QPushButton(text, parent)
    , role_(role)
{
    setAttribute(Qt::WA_Hover);
    // Else the first button that is reached would take every Return in the window.
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Button::sizeHint() const
{
    const QFontMetrics metrics(font());
    const int width = metrics.horizontalAdvance(text()) + 2 * metrics::controlPadding;
    return {qMax(width, narrowest), qMax(metrics::controlHeight, metrics.height() + 12)};
}

void Button::paintEvent(QPaintEvent*)
{
    const Colors colors = Colors::of(*this);
    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(paleness);
    const QRectF frame(rect());
    paintFrame(painter, frame, role_, colors);
    if (isEnabled() && (isDown() || underMouse()))
        paintPanel(painter, frame, metrics::controlRadius, isDown() ? colors.pressed : colors.hover);

    const int textWidth = QFontMetrics(font()).horizontalAdvance(text());
    const int left = qMax(metrics::controlPadding, (width() - textWidth) / 2);
    painter.setPen(textColor(role_, colors));
    painter.drawText(rect().adjusted(left, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, text());
    if (showsFocus(*this)) {
        const bool isFilled = role_ == ButtonRole::prominent;
        paintFocusRing(painter, isFilled ? frame.adjusted(2, 2, -2, -2) : frame,
                       isFilled ? metrics::controlRadius - 2 : metrics::controlRadius,
                       isFilled ? colors.onAccent : colors.accent);
    }
}

void Button::keyPressEvent(QKeyEvent* event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat())
        return click();
    QPushButton::keyPressEvent(event);
}

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
    if (isEnabled() && (isDown() || underMouse()))
        paintPanel(painter, frame, metrics::controlRadius, isDown() ? colors.pressed : colors.hover);
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
