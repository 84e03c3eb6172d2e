#include "hud_view/easing.h"

#include <algorithm>

namespace corvandi {
namespace {

/// One coordinate of a cubic Bézier curve from 0 to 1 with these control values.
qreal bezier(qreal first, qreal second, qreal t)
{
    const qreal rest = 1 - t;
    return 3 * rest * rest * t * first + 3 * rest * t * t * second + t * t * t;
}

/// Halvings of the interval in the search for a curve's parameter: exact to a millionth.
constexpr int halvings = 20;

/// The height of the curve through (firstX, firstY) and (secondX, secondY) above `x`. Control values within
/// 0...1 make its x grow with its parameter.
qreal curveAt(qreal firstX, qreal firstY, qreal secondX, qreal secondY, qreal x)
{
    qreal low = 0;
    qreal high = 1;
    for (int i = 0; i < halvings; ++i) {
        const qreal middle = (low + high) / 2;
        (bezier(firstX, secondX, middle) < x ? low : high) = middle;
    }
    return bezier(firstY, secondY, (low + high) / 2);
}

bool isEnd(qreal share)
{
    return share <= 0 || share >= 1;
}

} // namespace

qreal share(AnimationTime time, AnimationTime duration)
{
    const auto part = static_cast<qreal>(time.count()) / static_cast<qreal>(duration.count());
    return std::clamp(part, 0.0, 1.0);
}

qreal easeOut(qreal share)
{
    return isEnd(share) ? std::clamp(share, 0.0, 1.0) : curveAt(0, 0, 0.58, 1, share);
}

qreal easeInOut(qreal share)
{
    return isEnd(share) ? std::clamp(share, 0.0, 1.0) : curveAt(0.42, 0, 0.58, 1, share);
}

} // namespace corvandi
