#pragma once

#include "hud_view/hud_colors.h"

#include <QImage>
#include <QPainter>
#include <QRegion>
#include <QSizeF>

namespace corvandi {

/// The capsule of glass with its shadow, without contents. Kept as a picture while nothing about it
/// changes, for that is most of the time.
class HudBackground {
public:
    struct Look {
        QSizeF pill;
        QSize view;
        qreal scale = 1;
        HudColors colors;
        HudBackdrop backdrop = HudBackdrop::translucent;

        friend bool operator==(const Look&, const Look&) = default;
    };

    /// The capsule in the middle of the view. Against an opaque backdrop the view is filled all over and
    /// there is no shadow.
    [[nodiscard]] const QImage& picture(const Look& look);

private:
    Look look_;
    QImage picture_;
};

/// How round a capsule is.
[[nodiscard]] qreal capsuleRadius(const QRectF& capsule);
/// The points whose middle lies within the capsule: rounder than a region made of ellipses.
[[nodiscard]] QRegion capsuleRegion(const QRect& capsule);

} // namespace corvandi
