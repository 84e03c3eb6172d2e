#pragma once

#include "hud_view/bar_meter.h"
#include "hud_view/hud_layout.h"
#include "hud_view/spring.h"

#include <vector>

namespace corvandi {

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
struct HudPart {
    HudFace face;
    HudLayout layout;
    /// The meter's bars in their present heights, 0...1.
    std::vector<double> bars;
    qreal opacity = 1;
    /// How long the face has been there.
    AnimationTime age{};
};

/// The HUD at one moment.
struct HudScene {
    QSizeF pill;
    /// From the bottom to the top: faces that fade out, then the present one.
    std::vector<HudPart> parts;
};

/// The motion of the HUD: what is to be seen at a time, given what has been shown when. A change of state
/// lets a spring carry the capsule to its new size, while the old face fades out and the new one in; all
/// other changes but those of the bars' heights happen at once. Nothing runs, and times never go back.
class HudAnimation {
public:
    static constexpr std::chrono::milliseconds springResponse{220};

    /// Shows a face without any transition, as for somebody who has just begun to look.
    void jumpTo(HudFace face, HudLayout layout, AnimationTime now);
    /// Shows another face, or the same one with other contents.
    void moveTo(HudFace face, HudLayout layout, AnimationTime now);

    [[nodiscard]] HudScene at(AnimationTime now) const;
    /// The capsule at that time.
    [[nodiscard]] QSizeF pillAt(AnimationTime now) const;
    /// The width that the capsule reaches at most on the way to its size.
    [[nodiscard]] qreal reachAt(AnimationTime now) const;
    /// A change of state is under way.
    [[nodiscard]] bool isChanging(AnimationTime now) const;
    /// Something moves, be it the dot, the spinner, the bars or a change of state.
    [[nodiscard]] bool isMoving(AnimationTime now) const;
    /// The face that is to stay.
    [[nodiscard]] const HudFace& face() const { return present_.face; }
    [[nodiscard]] const HudLayout& layout() const { return present_.layout; }

private:
    struct Shown {
        HudFace face;
        HudLayout layout;
        BarMeter bars;
        AnimationTime since{};
        Spring opacity{1, springResponse};

        [[nodiscard]] HudPart at(AnimationTime now) const;
    };

    void changeFace(HudFace face, HudLayout layout, AnimationTime now);
    void changeContents(HudFace face, HudLayout layout, AnimationTime now);

    Shown present_;
    std::vector<Shown> leaving_;
    Spring width_{0, springResponse};
    Spring height_{0, springResponse};
    /// Where the width's spring has begun to pull.
    qreal startWidth_ = 0;
};

} // namespace corvandi
