#include "core/hud/hud_model.h"

namespace corvandi {

void HUDModel::setBars(std::vector<double> bars)
{
    bars_ = std::move(bars);
    Q_EMIT changed();
}

void HUDModel::setElapsed(const QString& elapsed)
{
    elapsed_ = elapsed;
    Q_EMIT changed();
}

void HUDModel::setStatusText(const QString& text)
{
    statusText_ = text;
    Q_EMIT changed();
}

void HUDModel::setState(HUDState state)
{
    state_ = state;
    Q_EMIT changed();
}

} // namespace corvandi
