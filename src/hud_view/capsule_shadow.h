#pragma once

#include <QImage>
#include <QRectF>
#include <QSize>

namespace corvandi {

/// The soft shadow of a capsule.
struct CapsuleShadow {
    /// Darkness where the shadow is full, 0...1.
    qreal opacity = 0.18;
    /// The width of the soft edge on either side of the capsule's outline, in points.
    qreal blurRadius = 8;
    /// How far below the capsule its shadow falls, in points.
    qreal drop = 3;
};

/// An image of `size` points at `scale` device pixels each, empty but for the shadow of `capsule`.
[[nodiscard]] QImage drawShadow(const CapsuleShadow& shadow, const QRectF& capsule, const QSize& size,
                                qreal scale);

} // namespace corvandi
