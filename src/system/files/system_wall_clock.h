#pragma once

#include "ports/wall_clock.h"

namespace corvandi {

/// The system's clock, which the user and time servers set.
class SystemWallClock : public WallClock {
public:
    [[nodiscard]] Date now() const override { return Date::fromTimePoint(std::chrono::system_clock::now()); }
};

} // namespace corvandi
