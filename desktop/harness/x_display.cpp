#include "harness/x_display.h"

#include <X11/Xlib.h>

namespace corvandi::harness {

XDisplay::XDisplay()
    : display_(::XOpenDisplay(nullptr))
{
    if (!display_)
        throw HarnessError("no display");
}

bool XDisplay::waitForEvent(Clock::time_point deadline) const
{
    return ::XPending(get()) > 0 || waitUntilReadable(ConnectionNumber(get()), deadline);
}

void XDisplay::Close::operator()(_XDisplay* display) const
{
    ::XCloseDisplay(display);
}

} // namespace corvandi::harness
