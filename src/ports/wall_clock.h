#pragma once

#include "base/date.h"

namespace corvandi {

/// What time it is for a person. May jump in both directions, so no duration is taken from it.
///
/// Thread: any.
class WallClock {
public:
    virtual ~WallClock() = default;

    [[nodiscard]] virtual Date now() const = 0;
};

} // namespace corvandi
