#include "hud_view/hud_face.h"

namespace corvandi {

HudFace HudFace::of(const HUDModel& model)
{
    return {model.state(), model.bars(), model.elapsed(), model.statusText().simplified()};
}

bool HudFace::differsInBarsOnly(const HudFace& other) const
{
    return state == other.state && elapsed == other.elapsed && text == other.text;
}

} // namespace corvandi
