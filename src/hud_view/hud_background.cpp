#include "hud_view/hud_background.h"

#include "hud_view/capsule_shadow.h"

#include <QLinearGradient>

#include <algorithm>
#include <cmath>

namespace corvandi {
namespace {

QRectF pillIn(const HudBackground::Look& look)
{
    QRectF pill(QPointF(), look.pill);
    pill.moveCenter(QRectF(QPointF(), look.view).center());
    return pill;
}

QLinearGradient downwards(const QRectF& frame, const QColor& top, const QColor& bottom)
{
    QLinearGradient gradient(frame.topLeft(), frame.bottomLeft());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    return gradient;
}

void drawCapsule(QPainter& painter, const QRectF& capsule)
{
    painter.drawRoundedRect(capsule, capsuleRadius(capsule), capsuleRadius(capsule));
}

/// A line of one point along the inner side of the capsule's edge.
void drawInnerEdge(QPainter& painter, const QRectF& capsule, const QBrush& brush)
{
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(brush, 1));
    drawCapsule(painter, capsule.adjusted(0.5, 0.5, -0.5, -0.5));
}

void drawGlass(QPainter& painter, const QRectF& pill, const HudColors& colors)
{
    // The shadow must not darken the glass from below.
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.setPen(Qt::NoPen);
    painter.setBrush(downwards(pill, colors.fillTop, colors.fillBottom));
    drawCapsule(painter, pill);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    drawInnerEdge(painter, pill, downwards(pill, colors.rimTop, colors.rimBottom));
    drawInnerEdge(painter, pill.adjusted(-1, -1, 1, 1), colors.outline);
}

/// Cut out, the capsule has steps instead of a soft outline: a wide edge reaches over them.
void drawOpaque(QPainter& painter, const QRectF& pill, const HudColors& colors)
{
    constexpr qreal edge = 3;
    painter.fillRect(QRectF(painter.viewport()), downwards(pill, colors.fillTop, colors.fillBottom));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colors.outline, edge));
    drawCapsule(painter, pill);
}

} // namespace

qreal capsuleRadius(const QRectF& capsule)
{
    return qMin(capsule.width(), capsule.height()) / 2;
}

QRegion capsuleRegion(const QRect& capsule)
{
    const qreal radius = capsuleRadius(capsule);
    QRegion region;
    for (int y = 0; y < capsule.height(); ++y) {
        const qreal up = y + 0.5;
        const qreal beyond = std::max({radius - up, up - (capsule.height() - radius), 0.0});
        const int inset = qRound(radius - std::sqrt(radius * radius - beyond * beyond));
        region += QRect(capsule.left() + inset, capsule.top() + y, capsule.width() - 2 * inset, 1);
    }
    return region;
}

const QImage& HudBackground::picture(const Look& look)
{
    if (look == look_ && !picture_.isNull())
        return picture_;
    look_ = look;
    const bool isTranslucent = look.backdrop == HudBackdrop::translucent;
    const QRectF pill = pillIn(look);
    picture_ = drawShadow(isTranslucent ? CapsuleShadow{} : CapsuleShadow{.opacity = 0}, pill, look.view,
                          look.scale);
    QPainter painter(&picture_);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isTranslucent)
        drawGlass(painter, pill, look.colors);
    else
        drawOpaque(painter, pill, look.colors);
    return picture_;
}

} // namespace corvandi
