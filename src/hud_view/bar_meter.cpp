#include "hud_view/bar_meter.h"

#include "hud_view/easing.h"

#include <algorithm>
#include <cmath>

namespace corvandi {

void BarMeter::jumpTo(std::vector<double> heights)
{
    to_ = std::move(heights);
    from_ = to_;
}

void BarMeter::moveTo(const std::vector<double>& heights, AnimationTime now)
{
    if (heights == to_)
        return;
    from_ = at(now);
    // A bar that was not there before appears in its height.
    for (size_t i = from_.size(); i < heights.size(); ++i)
        from_.push_back(heights[i]);
    from_.resize(heights.size());
    to_ = heights;
    start_ = now;
}

std::vector<double> BarMeter::at(AnimationTime now) const
{
    const qreal progress = easeOut(share(now - start_, duration));
    std::vector<double> heights(to_.size());
    for (size_t i = 0; i < heights.size(); ++i)
        heights[i] = std::lerp(from_[i], to_[i], progress);
    return heights;
}

} // namespace corvandi
