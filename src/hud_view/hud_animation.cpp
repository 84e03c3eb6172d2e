#include "hud_view/hud_animation.h"

#include "hud_view/easing.h"

#include <algorithm>
#include <cmath>

namespace corvandi {
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

HudPart HudAnimation::Shown::at(AnimationTime now) const
{
    // Squared, so that two faces are never half legible at the same time.
    const qreal there = std::clamp(opacity.at(now), 0.0, 1.0);
    return {face, layout, bars.at(now), there * there, now - since};
}

void HudAnimation::jumpTo(HudFace face, HudLayout layout, AnimationTime now)
{
    leaving_.clear();
    width_.jumpTo(layout.pill.width());
    height_.jumpTo(layout.pill.height());
    present_ = Shown{.face = std::move(face), .layout = std::move(layout), .bars = {}, .since = now};
    present_.bars.jumpTo(present_.face.bars);
}

void HudAnimation::moveTo(HudFace face, HudLayout layout, AnimationTime now)
{
    std::erase_if(leaving_, [now](const Shown& shown) { return shown.opacity.isAtRest(now); });
    if (face.state != present_.face.state)
        changeFace(std::move(face), std::move(layout), now);
    else
        changeContents(std::move(face), std::move(layout), now);
}

void HudAnimation::changeFace(HudFace face, HudLayout layout, AnimationTime now)
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

void HudAnimation::changeContents(HudFace face, HudLayout layout, AnimationTime now)
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

HudScene HudAnimation::at(AnimationTime now) const
{
    HudScene scene{pillAt(now), {}};
    for (const Shown& shown : leaving_) {
        if (!shown.opacity.isAtRest(now))
            scene.parts.push_back(shown.at(now));
    }
    scene.parts.push_back(present_.at(now));
    return scene;
}

QSizeF HudAnimation::pillAt(AnimationTime now) const
{
    return {width_.at(now), height_.at(now)};
}

qreal HudAnimation::reachAt(AnimationTime now) const
{
    return isChanging(now) ? std::max(startWidth_, width_.target()) : width_.target();
}

bool HudAnimation::isChanging(AnimationTime now) const
{
    return !width_.isAtRest(now) || !height_.isAtRest(now) || !present_.opacity.isAtRest(now);
}

bool HudAnimation::isMoving(AnimationTime now) const
{
    const HUDState state = present_.face.state;
    return state == HUDState::recording || state == HUDState::processing || isChanging(now);
}

} // namespace corvandi
