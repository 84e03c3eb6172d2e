#include "hud_view/capsule_shadow.h"

#include <algorithm>
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
    return std::hypot(point.x() - x, point.y() - y) - radius;
}

/// What a blur leaves of an edge at this distance from it, 0...1. A blur of some radius is a normal
/// distribution with half of that as its deviation.
qreal blurred(qreal distance, qreal radius)
{
    return 0.5 * std::erfc(distance / (radius / 2 * std::numbers::sqrt2));
}

} // namespace

QImage drawShadow(const CapsuleShadow& shadow, const QRectF& capsule, const QSize& size, qreal scale)
{
    QImage image((QSizeF(size) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    const QRectF cast = capsule.translated(0, shadow.drop);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QPointF point((x + 0.5) / scale, (y + 0.5) / scale);
            const qreal share = blurred(distanceTo(cast, point), shadow.blurRadius);
            line[x] = qRgba(0, 0, 0, static_cast<int>(std::lround(255 * shadow.opacity * share)));
        }
    }
    return image;
}

} // namespace corvandi
