#pragma once

#include "ports/activation_policy.h"

namespace corvandi {

/// On a Linux desktop a program is in the taskbar exactly while it has ordinary windows, so there is
/// nothing to ask the desktop for. What remains of becoming an agent again is to be as small as one: the
/// memory that the windows have left behind (pictures that were kept for drawing, freed pieces that the
/// allocator keeps) goes back to the system.
///
/// Thread: main thread only. Becoming an agent takes a few milliseconds.
class IdleActivationPolicy : public ActivationPolicy {
public:
    void set(ActivationMode mode) override;
};

} // namespace corvandi
