#pragma once

#include "views/hud/hud_layout.h"

#include <QtGlobal>

#include <chrono>
#include <vector>

namespace corvandi {

/// Times of an animation, since any moment that they have in common.
using AnimationTime = std::chrono::nanoseconds;

/// How much of `duration` has passed after `time`, 0...1.
[[nodiscard]] qreal share(AnimationTime time, AnimationTime duration);

/// The usual curves over the share of time that has passed, both 0...1: cubic Bézier curves with the
/// control points (0, 0) and (0.58, 1), or (0.42, 0) and (0.58, 1).
[[nodiscard]] qreal easeOut(qreal share);
[[nodiscard]] qreal easeInOut(qreal share);

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

/// The bars of the level meter on their way from one height to the next. Bars are told apart by their
/// position.
class BarMeter {
public:
    /// How long a bar takes to a new height, quick at first and slow at the end.
    static constexpr std::chrono::milliseconds duration{90};

    /// Shows these heights, at once.
    void jumpTo(std::vector<double> heights);
    /// Goes from the heights shown by `now` to these.
    void moveTo(const std::vector<double>& heights, AnimationTime now);

    [[nodiscard]] std::vector<double> at(AnimationTime now) const;
    [[nodiscard]] bool isAtRest(AnimationTime now) const { return now - start_ >= duration; }

private:
    std::vector<double> from_;
    std::vector<double> to_;
    AnimationTime start_{-duration};
};

/// How the recording dot looks at one moment.
struct DotPose {
    qreal scale;
    qreal opacity;
};

/// The dot some time after it has appeared: it grows and shrinks without end.
[[nodiscard]] DotPose dotPose(AnimationTime age);
/// The share of a turn that the spinner has made some time after it has appeared, 0...1.
[[nodiscard]] qreal spinnerTurn(AnimationTime age);

/// One face as it is to be drawn at one moment.
struct HUDPart {
    HUDFace face;
    HUDLayout layout;
    /// The meter's bars in their present heights, 0...1.
    std::vector<double> bars;
    qreal opacity = 1;
    /// How long the face has been there.
    AnimationTime age{};
};

/// The HUD at one moment.
struct HUDScene {
    QSizeF pill;
    /// From the bottom to the top: faces that fade out, then the present one.
    std::vector<HUDPart> parts;
};

/// The motion of the HUD: what is to be seen at a time, given what has been shown when. A change of state
/// lets a spring carry the capsule to its new size, while the old face fades out and the new one in; all
/// other changes but those of the bars' heights happen at once. Nothing runs, and times never go back.
class HUDAnimation {
public:
    static constexpr std::chrono::milliseconds springResponse{220};

    /// Shows a face without any transition, as for somebody who has just begun to look.
    void jumpTo(HUDFace face, HUDLayout layout, AnimationTime now);
    /// Shows another face, or the same one with other contents.
    void moveTo(HUDFace face, HUDLayout layout, AnimationTime now);

    [[nodiscard]] HUDScene at(AnimationTime now) const;
    /// The capsule at that time.
    [[nodiscard]] QSizeF pillAt(AnimationTime now) const;
    /// The width that the capsule reaches at most on the way to its size.
    [[nodiscard]] qreal reachAt(AnimationTime now) const;
    /// A change of state is under way.
    [[nodiscard]] bool isChanging(AnimationTime now) const;
    /// Something moves, be it the dot, the spinner, the bars or a change of state.
    [[nodiscard]] bool isMoving(AnimationTime now) const;
    /// The face that is to stay.
    [[nodiscard]] const HUDFace& face() const { return present_.face; }
    [[nodiscard]] const HUDLayout& layout() const { return present_.layout; }

private:
    struct Shown {
        HUDFace face;
        HUDLayout layout;
        BarMeter bars;
        AnimationTime since{};
        Spring opacity{1, springResponse};

        [[nodiscard]] HUDPart at(AnimationTime now) const;
    };

    void changeFace(HUDFace face, HUDLayout layout, AnimationTime now);
    void changeContents(HUDFace face, HUDLayout layout, AnimationTime now);

    Shown present_;
    std::vector<Shown> leaving_;
    Spring width_{0, springResponse};
    Spring height_{0, springResponse};
    /// Where the width's spring has begun to pull.
    qreal startWidth_ = 0;
};

} // namespace corvandi
