#pragma once

#include "hud/hud_model.h"

namespace corvandi {

/// What a HUD model shows at one moment, for faces that fade out while the model has gone on.
struct HudFace {
    HUDState state = HUDState::processing;
    std::vector<double> bars;
    QString elapsed;
    /// The status text without line breaks.
    QString text;

    [[nodiscard]] static HudFace of(const HUDModel& model);
    /// Whether `other` shows the same but for its bars.
    [[nodiscard]] bool differsInBarsOnly(const HudFace& other) const;
};

} // namespace corvandi
