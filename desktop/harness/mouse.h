#pragma once

#include "harness/area.h"
#include "harness/x_display.h"

namespace corvandi::harness {

/// Real motions and clicks, as if from a mouse.
class Mouse {
public:
    /// To a point of the screen, in pixels.
    void moveTo(int x, int y) const;
    /// With the left button, in the middle of the area.
    void clickInto(const Area& area) const;

private:
    XDisplay display_;
};

} // namespace corvandi::harness
