#include "hud_view/spring.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvandi {
namespace {

/// In units of 1 / w: from rest, less than a ten-thousandth of the way is left by then.
constexpr qreal timeToRest = 12;

qreal seconds(AnimationTime time)
{
    return std::chrono::duration<qreal>(time).count();
}

} // namespace

Spring::Spring(qreal place, AnimationTime response)
    : frequency_(2 * std::numbers::pi / seconds(response))
    , target_(place)
{
}

void Spring::moveTo(qreal target, AnimationTime now)
{
    if (target == target_)
        return;
    const qreal place = at(now);
    const qreal speed = speedAt(now);
    target_ = target;
    startDistance_ = place - target;
    startSpeed_ = speed;
    start_ = now;
}

void Spring::jumpTo(qreal place)
{
    target_ = place;
    startDistance_ = 0;
    startSpeed_ = 0;
}

qreal Spring::at(AnimationTime now) const
{
    if (isAtRest(now))
        return target_;
    const qreal w = frequency_;
    const qreal t = age(now);
    return target_ + (startDistance_ + (startSpeed_ + w * startDistance_) * t) * std::exp(-w * t);
}

bool Spring::isAtRest(AnimationTime now) const
{
    return (startDistance_ == 0 && startSpeed_ == 0) || age(now) * frequency_ >= timeToRest;
}

qreal Spring::age(AnimationTime now) const
{
    return std::max(seconds(now - start_), 0.0);
}

qreal Spring::speedAt(AnimationTime now) const
{
    if (isAtRest(now))
        return 0;
    const qreal w = frequency_;
    const qreal t = age(now);
    return (startSpeed_ - w * (startSpeed_ + w * startDistance_) * t) * std::exp(-w * t);
}

} // namespace corvandi
