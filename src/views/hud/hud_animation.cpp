#include "views/hud/hud_animation.h"

#include <QEasingCurve>
#include <QPointF>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvandi {
namespace {

/// The curve from (0, 0) to (1, 1) with these control points.
QEasingCurve cubicBezier(QPointF first, QPointF second)
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(first, second, {1, 1});
    return curve;
}

} // namespace

qreal share(AnimationTime time, AnimationTime duration)
{
    const auto part = static_cast<qreal>(time.count()) / static_cast<qreal>(duration.count());
    return std::clamp(part, 0.0, 1.0);
}

qreal easeOut(qreal share)
{
    static const QEasingCurve curve = cubicBezier({0, 0}, {0.58, 1});
    return curve.valueForProgress(share);
}

qreal easeInOut(qreal share)
{
    static const QEasingCurve curve = cubicBezier({0.42, 0}, {0.58, 1});
    return curve.valueForProgress(share);
}

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

namespace {

using namespace std::chrono_literals;

/// The dot grows, and shrinks again, in this time.
constexpr auto pulse = 700ms;
constexpr qreal restingScale = 0.62;
constexpr qreal restingOpacity = 0.55;
constexpr auto turn = 900ms;
/// What changes within the first frame of a face belongs to its appearance.
constexpr auto firstFrame = 16ms;

} // namespace

DotPose dotPose(AnimationTime age)
{
    const AnimationTime way = age % (2 * pulse);
    const qreal grown = easeInOut(share(way < pulse ? way : 2 * pulse - way, pulse));
    return {std::lerp(restingScale, 1.0, grown), std::lerp(restingOpacity, 1.0, grown)};
}

qreal spinnerTurn(AnimationTime age)
{
    return share(age % turn, turn);
}

HUDPart HUDAnimation::Shown::at(AnimationTime now) const
{
    // Squared, so that two faces are never half legible at the same time.
    const qreal there = std::clamp(opacity.at(now), 0.0, 1.0);
    return {face, layout, bars.at(now), there * there, now - since};
}

void HUDAnimation::jumpTo(HUDFace face, HUDLayout layout, AnimationTime now)
{
    leaving_.clear();
    width_.jumpTo(layout.pill.width());
    height_.jumpTo(layout.pill.height());
    present_ = Shown{.face = std::move(face), .layout = std::move(layout), .bars = {}, .since = now};
    present_.bars.jumpTo(present_.face.bars);
}

void HUDAnimation::moveTo(HUDFace face, HUDLayout layout, AnimationTime now)
{
    std::erase_if(leaving_, [now](const Shown& shown) { return shown.opacity.isAtRest(now); });
    if (face.state != present_.face.state)
        changeFace(std::move(face), std::move(layout), now);
    else
        changeContents(std::move(face), std::move(layout), now);
}

void HUDAnimation::changeFace(HUDFace face, HUDLayout layout, AnimationTime now)
{
    present_.opacity.moveTo(0, now);
    leaving_.push_back(std::move(present_));
    startWidth_ = width_.at(now);
    width_.moveTo(layout.pill.width(), now);
    height_.moveTo(layout.pill.height(), now);
    present_ = Shown{.face = std::move(face), .layout = std::move(layout), .bars = {}, .since = now};
    present_.bars.jumpTo(present_.face.bars);
    present_.opacity.jumpTo(0);
    present_.opacity.moveTo(1, now);
}

void HUDAnimation::changeContents(HUDFace face, HUDLayout layout, AnimationTime now)
{
    if (isChanging(now)) {
        width_.moveTo(layout.pill.width(), now);
        height_.moveTo(layout.pill.height(), now);
    } else {
        width_.jumpTo(layout.pill.width());
        height_.jumpTo(layout.pill.height());
    }
    if (now - present_.since < firstFrame)
        present_.bars.jumpTo(face.bars);
    else
        present_.bars.moveTo(face.bars, now);
    present_.face = std::move(face);
    present_.layout = std::move(layout);
}

HUDScene HUDAnimation::at(AnimationTime now) const
{
    HUDScene scene{pillAt(now), {}};
    for (const Shown& shown : leaving_) {
        if (!shown.opacity.isAtRest(now))
            scene.parts.push_back(shown.at(now));
    }
    scene.parts.push_back(present_.at(now));
    return scene;
}

QSizeF HUDAnimation::pillAt(AnimationTime now) const
{
    return {width_.at(now), height_.at(now)};
}

qreal HUDAnimation::reachAt(AnimationTime now) const
{
    return isChanging(now) ? std::max(startWidth_, width_.target()) : width_.target();
}

bool HUDAnimation::isChanging(AnimationTime now) const
{
    return !width_.isAtRest(now) || !height_.isAtRest(now) || !present_.opacity.isAtRest(now);
}

bool HUDAnimation::isMoving(AnimationTime now) const
{
    const HUDState state = present_.face.state;
    return state == HUDState::recording || state == HUDState::processing || isChanging(now);
}

} // namespace corvandi
