#include "views/kit/controls.h"

#include "views/kit/style.h"
#include "views/symbols/symbol.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QWheelEvent>

#include <chrono>

namespace corvandi::kit {
namespace {

constexpr int barWidth = 12;
constexpr int handleWidth = 6;
constexpr int handleWidthWhenNear = 8;

} // namespace

ScrollBar::ScrollBar(QWidget* parent)
    : QScrollBar(Qt::Vertical, parent)
{
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
}

QSize ScrollBar::sizeHint() const
{
    return {barWidth, QScrollBar::sizeHint().height()};
}

void ScrollBar::paintEvent(QPaintEvent*)
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    QRectF handle(style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this));
    const bool isNear = isSliderDown() || underMouse();
    const qreal side = (handle.width() - (isNear ? handleWidthWhenNear : handleWidth)) / 2;
    handle.adjust(side, 2, -side, -2);
    const Colors colors = Colors::of(*this);
    QPainter painter(this);
    paintPanel(painter, handle, handle.width() / 2, mixed(colors.window, colors.text, isNear ? 0.5F : 0.32F));
}

namespace {

using namespace std::chrono_literals;

constexpr QSizeF trackSize(38, 22);
constexpr qreal knobInset = 3;
/// Room for the focus ring around the track.
constexpr int ringRoom = 3;
constexpr std::chrono::milliseconds glideTime = 140ms;

} // namespace

Switch::Switch(QWidget* parent)
    : QAbstractButton(parent)
{
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setContentsMargins(ringRoom, ringRoom, ringRoom, ringRoom);
    animation_.setEasingCurve(QEasingCurve::InOutCubic);
    connect(&animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        position_ = value.toReal();
        update();
    });
    connect(this, &QAbstractButton::toggled, this, &Switch::glide);
}

QSize Switch::sizeHint() const
{
    return trackSize.toSize() + QSize(2 * ringRoom, 2 * ringRoom);
}

void Switch::glide(bool isOn)
{
    const qreal end = isOn ? 1 : 0;
    animation_.stop();
    const bool isAnimated = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    if (!isAnimated || !isVisible()) {
        position_ = end;
        update();
        return;
    }
    animation_.setDuration(static_cast<int>(glideTime.count()));
    animation_.setStartValue(position_);
    animation_.setEndValue(end);
    animation_.start();
}

void Switch::paintEvent(QPaintEvent*)
{
    const Colors colors = Colors::of(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF track(QPointF(), trackSize);
    track.moveCenter(QRectF(rect()).center());
    const qreal radius = track.height() / 2;
    if (!isEnabled())
        painter.setOpacity(0.45);
    paintPanel(painter, track, radius, mixed(colors.track, colors.accent, static_cast<float>(position_)));
    if (isDown() || underMouse())
        paintPanel(painter, track, radius, isDown() ? colors.pressed : colors.hover);
    const qreal diameter = track.height() - 2 * knobInset;
    const qreal way = track.width() - 2 * knobInset - diameter;
    const QRectF knob(track.left() + knobInset + way * position_, track.top() + knobInset, diameter,
                      diameter);
    painter.setPen(QPen(QColor(0, 0, 0, 36), 1));
    painter.setBrush(QColor(252, 252, 253));
    painter.drawEllipse(knob);
    if (showsFocus(*this))
        paintFocusRing(painter, QRectF(rect()), radius + ringRoom, colors.accent);
}

void Switch::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void Switch::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

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

namespace {

constexpr int symbolSize = 14;
constexpr int symbolGap = 6;
/// A line edit keeps so much clear on either side of its text, and a little more for letters that stick out.
constexpr int clearSides = 2;
constexpr int bearings = 2;
constexpr int padding = 7;

} // namespace

TextField::TextField(std::optional<Symbol> symbol, QWidget* parent)
    : QLineEdit(parent)
    , symbol_(symbol)
{
    setFrame(false);
    // The field is painted here, under the text.
    QPalette clear = palette();
    clear.setColor(QPalette::Base, Qt::transparent);
    setPalette(clear);
    setTextMargins(symbol_ ? padding + symbolSize + symbolGap : padding, 0, padding, 0);
}

QSize TextField::sizeHint() const
{
    const QFontMetrics metrics(font());
    return {QLineEdit::sizeHint().width(), qMax(metrics::controlHeight, metrics.height() + 12)};
}

QSize TextField::minimumSizeHint() const
{
    const QMargins margins = textMargins();
    const int width =
        QFontMetrics(font()).horizontalAdvance(placeholderText()) + margins.left() + margins.right();
    return {qMax(QLineEdit::minimumSizeHint().width(), width + 2 * clearSides + bearings),
            sizeHint().height()};
}

void TextField::setPlaceholder(const QString& text)
{
    setPlaceholderText(text);
    updateGeometry();
    if (accessibleName().isEmpty())
        setAccessibleName(text);
}

void TextField::paintEvent(QPaintEvent* event)
{
    // Its own palette has a clear base.
    const Colors colors = Colors::of(parentWidget() ? *parentWidget() : *this);
    {
        QPainter painter(this);
        const QRectF frame(rect());
        paintPanel(painter, frame, metrics::controlRadius, colors.control, colors.controlEdge);
        if (hasFocus())
            paintFocusRing(painter, frame, metrics::controlRadius, colors.accent);
        if (symbol_) {
            const QSize size(symbolSize, symbolSize);
            const QRect place(QPoint(padding + clearSides, (height() - symbolSize) / 2), size);
            painter.drawPixmap(place,
                               symbolPixmap(*symbol_, size, colors.secondaryText, devicePixelRatioF()));
        }
    }
    QLineEdit::paintEvent(event);
}

} // namespace corvandi::kit
