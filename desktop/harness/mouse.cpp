#include "harness/mouse.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>

namespace corvandi::harness {

void Mouse::moveTo(int x, int y) const
{
    constexpr int ownScreen = -1;
    ::XTestFakeMotionEvent(display_.get(), ownScreen, x, y, CurrentTime);
    ::XSync(display_.get(), False);
}

void Mouse::clickInto(const Area& area) const
{
    moveTo(area.x + area.width / 2, area.y + area.height / 2);
    ::XTestFakeButtonEvent(display_.get(), Button1, True, CurrentTime);
    ::XTestFakeButtonEvent(display_.get(), Button1, False, CurrentTime);
    ::XSync(display_.get(), False);
}

} // namespace corvandi::harness
