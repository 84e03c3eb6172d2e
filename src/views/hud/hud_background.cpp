#include "views/hud/hud_background.h"

#include <QLinearGradient>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace corvandi {
namespace {

/// How far `point` lies outside the capsule; negative within.
qreal distanceTo(const QRectF& capsule, const QPointF& point)
{
    const qreal radius = std::min(capsule.width(), capsule.height()) / 2;
    const qreal x = std::clamp(point.x(), capsule.left() + radius, capsule.right() - radius);
    const qreal y = std::clamp(point.y(), capsule.top() + radius, capsule.bottom() - radius);
    return std::sqrt((point.x() - x) * (point.x() - x) + (point.y() - y) * (point.y() - y)) - radius;
}

/// What a blur leaves of an edge, by the distance from it: from the full darkness inside to nothing. A
/// blur of some radius is a normal distribution with half of that as its deviation.
class BlurredEdge {
public:
    explicit BlurredEdge(const CapsuleShadow& shadow)
        : reach_(shadow.blurRadius * 2)
    {
        for (size_t i = 0; i < alphas_.size(); ++i) {
            const qreal distance = (static_cast<qreal>(i) / last * 2 - 1) * reach_;
            const qreal share = 0.5 * std::erfc(distance / (shadow.blurRadius / 2 * std::numbers::sqrt2));
            alphas_[i] = qRgba(0, 0, 0, static_cast<int>(std::lround(255 * shadow.opacity * share)));
        }
    }
    /// The shadow's colour at a distance from the outline; negative within.
    [[nodiscard]] QRgb at(qreal distance) const
    {
        const qreal place = std::clamp((distance / reach_ + 1) / 2, 0.0, 1.0);
        return alphas_[static_cast<size_t>(place * last + 0.5)];
    }

private:
    static constexpr size_t last = 256;
    qreal reach_;
    std::array<QRgb, last + 1> alphas_{};
};

} // namespace

QImage drawShadow(const CapsuleShadow& shadow, const QRectF& capsule, const QSize& size, qreal scale)
{
    QImage image((QSizeF(size) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    const BlurredEdge edge(shadow);
    const QRectF cast = capsule.translated(0, shadow.drop);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QPointF point((x + 0.5) / scale, (y + 0.5) / scale);
            line[x] = edge.at(distanceTo(cast, point));
        }
    }
    return image;
}

namespace {

QRectF pillIn(const HUDBackground::Parameters& parameters)
{
    QRectF pill(QPointF(), parameters.pill);
    pill.moveCenter(QRectF(QPointF(), parameters.view).center());
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

void drawGlass(QPainter& painter, const QRectF& pill, const HUDColors& colors)
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
void drawOpaque(QPainter& painter, const QRectF& pill, const HUDColors& colors)
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

const QImage& HUDBackground::picture(const Parameters& parameters)
{
    if (parameters == parameters_ && !picture_.isNull())
        return picture_;
    parameters_ = parameters;
    const bool isTranslucent = parameters.backdrop == HUDBackdrop::translucent;
    const QRectF pill = pillIn(parameters);
    picture_ = drawShadow(isTranslucent ? CapsuleShadow{} : CapsuleShadow{.opacity = 0}, pill,
                          parameters.view, parameters.scale);
    QPainter painter(&picture_);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isTranslucent)
        drawGlass(painter, pill, parameters.colors);
    else
        drawOpaque(painter, pill, parameters.colors);
    return picture_;
}

} // namespace corvandi
