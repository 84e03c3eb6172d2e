#include "hud_view/capsule_shadow.h"

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

} // namespace corvandi
