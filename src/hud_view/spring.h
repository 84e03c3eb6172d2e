#pragma once

#include <QtGlobal>

#include <chrono>

namespace corvandi {

/// Times of an animation, since any moment that they have in common.
using AnimationTime = std::chrono::nanoseconds;

/// A value that a critically damped spring pulls to its target: as fast as it goes without overshooting.
/// The motion is a function of time alone; nothing runs.
///
/// The differential equation x'' + 2 w x' + w^2 x = 0 with w = 2 pi / response has the solution
/// x(t) = (d + (v + w d) t) e^(-w t) for a start at distance d from the target with speed v; from rest this
/// covers the share 1 - (1 + w t) e^(-w t) of the way.
class Spring {
public:
    Spring(qreal place, AnimationTime response);

    /// Pulls to `target` from `now` on, from the place and with the speed reached by then. A
    /// spring that pulls there already goes on as it does.
    void moveTo(qreal target, AnimationTime now);
    /// Is at `place` at once, at rest.
    void jumpTo(qreal place);

    [[nodiscard]] qreal at(AnimationTime now) const;
    /// So close to the target that nobody sees the difference; `at` is the target itself from then on.
    [[nodiscard]] bool isAtRest(AnimationTime now) const;
    [[nodiscard]] qreal target() const { return target_; }

private:
    /// Seconds since the spring began to pull to its present target.
    [[nodiscard]] qreal age(AnimationTime now) const;
    [[nodiscard]] qreal speedAt(AnimationTime now) const;

    qreal frequency_;
    qreal target_;
    qreal startDistance_ = 0;
    qreal startSpeed_ = 0;
    AnimationTime start_{};
};

} // namespace corvandi
