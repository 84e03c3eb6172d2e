#pragma once

#include "hud_view/spring.h"

namespace corvandi {

/// How much of `duration` has passed after `time`, 0...1.
[[nodiscard]] qreal share(AnimationTime time, AnimationTime duration);

/// The usual curves over the share of time that has passed, both 0...1: cubic Bézier curves with the
/// control points (0, 0) and (0.58, 1), or (0.42, 0) and (0.58, 1).
[[nodiscard]] qreal easeOut(qreal share);
[[nodiscard]] qreal easeInOut(qreal share);

} // namespace corvandi
