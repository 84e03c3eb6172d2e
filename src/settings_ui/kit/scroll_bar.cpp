#include "settings_ui/kit/scroll_bar.h"

#include "settings_ui/kit/colors.h"
#include "settings_ui/kit/painting.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

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

} // namespace corvandi::kit
