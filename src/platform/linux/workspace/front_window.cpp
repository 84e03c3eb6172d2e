#include "platform/linux/workspace/front_window.h"

#include "platform/linux/xcb/xcb_property.h"

namespace corvandi {

FrontWindowReader::FrontWindowReader(const XcbConnection& x)
    : x_(x)
    , windows_(x)
    , netActiveWindow_(x.atom("_NET_ACTIVE_WINDOW"))
{
}

xcb_window_t FrontWindowReader::activeWindow() const
{
    const auto windows = wordsOf(x_, requestProperty(x_, x_.root(), netActiveWindow_));
    return windows.empty() ? static_cast<xcb_window_t>(XCB_WINDOW_NONE) : windows.front();
}

std::optional<FrontWindow> FrontWindowReader::read() const
{
    const xcb_window_t window = activeWindow();
    if (window == XCB_WINDOW_NONE)
        return std::nullopt;
    return windows_.answer(windows_.ask(window));
}

} // namespace corvandi
