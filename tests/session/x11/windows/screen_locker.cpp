#include "screen_locker.h"

#include "support/event_loop.h"

#include <xcb/shape.h>

#include <stdexcept>

namespace corvandi::testing {
namespace {

bool isViewable(const XcbConnection& x, xcb_window_t window)
{
    const auto attributes =
        x.reply(xcb_get_window_attributes_reply, xcb_get_window_attributes(x.get(), window));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

} // namespace

ScreenLocker::Place ScreenLocker::wholeScreen()
{
    const XcbConnection x;
    const auto screen = x.reply(xcb_get_geometry_reply, xcb_get_geometry(x.get(), x.root()));
    return {0, 0, screen->width, screen->height};
}

ScreenLocker ScreenLocker::coveringTheScreen()
{
    ScreenLocker locker(Window::unmanaged, wholeScreen());
    locker.holdKeyboard();
    locker.holdPointer();
    return locker;
}

ScreenLocker::ScreenLocker(Window window, Place place)
    : window_(xcb_generate_id(x_->get()))
{
    const uint32_t isUnmanaged = window == Window::managed ? 0 : 1;
    const uint16_t kind =
        window == Window::withoutPicture ? XCB_WINDOW_CLASS_INPUT_ONLY : XCB_WINDOW_CLASS_INPUT_OUTPUT;
    xcb_create_window(x_->get(), XCB_COPY_FROM_PARENT, window_, x_->root(), place.x, place.y, place.width,
                      place.height, 0, kind, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &isUnmanaged);
    if (window == Window::managed) {
        const xcb_atom_t fullscreen = x_->atom("_NET_WM_STATE_FULLSCREEN");
        xcb_change_property(x_->get(), XCB_PROP_MODE_REPLACE, window_, x_->atom("_NET_WM_STATE"),
                            XCB_ATOM_ATOM, 32, 1, &fullscreen);
    }
    xcb_map_window(x_->get(), window_);
    if (!waitUntil([this] { return isViewable(*x_, window_); }))
        throw std::runtime_error("the window is not shown");
}

void ScreenLocker::holdKeyboard()
{
    const auto held =
        x_->reply(xcb_grab_keyboard_reply, xcb_grab_keyboard(x_->get(), 0, window_, XCB_CURRENT_TIME,
                                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    if (!held || held->status != XCB_GRAB_STATUS_SUCCESS)
        throw std::runtime_error("the keyboard is not to be had");
}

void ScreenLocker::holdPointer()
{
    const auto held =
        x_->reply(xcb_grab_pointer_reply,
                  xcb_grab_pointer(x_->get(), 0, window_, 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
                                   XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME));
    if (!held || held->status != XCB_GRAB_STATUS_SUCCESS)
        throw std::runtime_error("the pointer is not to be had");
}

void ScreenLocker::letInputThrough()
{
    xcb_shape_rectangles(x_->get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, window_,
                         0, 0, 0, nullptr);
    x_->sync();
}

} // namespace corvandi::testing
