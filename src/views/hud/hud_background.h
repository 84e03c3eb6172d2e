#pragma once

#include "views/hud/hud_painting.h"

#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QRegion>
#include <QSize>
#include <QSizeF>

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

/// The capsule of glass with its shadow, without contents. Kept as a picture while nothing about it
/// changes, for that is most of the time.
class HUDBackground {
public:
    /// What the picture depends on.
    struct Parameters {
        QSizeF pill;
        QSize view;
        qreal scale = 1;
        HUDColors colors;
        HUDBackdrop backdrop = HUDBackdrop::translucent;

        friend bool operator==(const Parameters&, const Parameters&) = default;
    };

    /// The capsule in the middle of the view. Against an opaque backdrop the view is filled all over and
    /// there is no shadow.
    [[nodiscard]] const QImage& picture(const Parameters& parameters);

private:
    /// Of the picture that is kept.
    Parameters parameters_;
    QImage picture_;
};

/// How round a capsule is.
[[nodiscard]] qreal capsuleRadius(const QRectF& capsule);
/// The points whose middle lies within the capsule: rounder than a region made of ellipses.
[[nodiscard]] QRegion capsuleRegion(const QRect& capsule);

} // namespace corvandi
