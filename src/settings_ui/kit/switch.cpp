#include "settings_ui/kit/switch.h"

#include "settings_ui/kit/colors.h"
#include "settings_ui/kit/metrics.h"
#include "settings_ui/kit/painting.h"

#include <QPainter>
#include <QStyle>

#include <chrono>

namespace corvandi::kit {
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

} // namespace corvandi::kit
