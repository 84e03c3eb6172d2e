#include "platform/linux/accessibility/permitted_event_taps.h"

#include <utility>

namespace corvandi {

PermittedEventTaps::PermittedEventTaps(EventTaps& taps, const AtSpiAccessibilityClient& accessibility)
    : taps_(taps)
    , accessibility_(accessibility)
{
}

std::unique_ptr<EventTap> PermittedEventTaps::create(const KeyChord& chord, EventTap::Callback callback)
{
    if (accessibility_.isSwitchedOff())
        return nullptr;
    return taps_.create(chord, std::move(callback));
}

} // namespace corvandi
