#pragma once

#include "platform/event_tap.h"
#include "platform/linux/accessibility/at_spi_accessibility_client.h"

namespace corvandi {

/// The keyboard as something that can be tapped while the desktop's accessibility support is on: as long as
/// that is known to be off, every tap is refused. Where nobody can tell, nobody can grant it either, and
/// taps are the server's business alone.
///
/// Thread: main thread only.
class PermittedEventTaps : public EventTaps {
public:
    /// Both outlive this object.
    PermittedEventTaps(EventTaps& taps, const AtSpiAccessibilityClient& accessibility);

    [[nodiscard]] std::unique_ptr<EventTap> create(const KeyChord& chord,
                                                   EventTap::Callback callback) override;

private:
    EventTaps& taps_;
    const AtSpiAccessibilityClient& accessibility_;
};

} // namespace corvandi
