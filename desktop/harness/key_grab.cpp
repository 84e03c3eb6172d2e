#include "harness/key_grab.h"

#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <span>

namespace corvandi::harness {
namespace {

class InputDevices {
public:
    explicit InputDevices(Display* display)
        : list_(::XIQueryDevice(display, XIAllDevices, &count_))
    {
    }
    InputDevices(const InputDevices&) = delete;
    InputDevices& operator=(const InputDevices&) = delete;
    ~InputDevices() { ::XIFreeDeviceInfo(list_); }

    [[nodiscard]] std::span<const XIDeviceInfo> all() const { return {list_, static_cast<size_t>(count_)}; }

private:
    int count_ = 0;
    XIDeviceInfo* list_;
};

/// The number of modifier combinations that somebody else holds.
int grab(Display* display, int device, KeyCode code)
{
    std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
    XISetMask(bits.data(), XI_KeyPress);
    XISetMask(bits.data(), XI_KeyRelease);
    XIEventMask mask{.deviceid = device, .mask_len = static_cast<int>(bits.size()), .mask = bits.data()};
    XIGrabModifiers modifiers{.modifiers = static_cast<int>(XIAnyModifier), .status = 0};
    return ::XIGrabKeycode(display, device, code, DefaultRootWindow(display), XIGrabModeAsync,
                           XIGrabModeAsync, False, &mask, 1, &modifiers);
}

} // namespace

KeyGrab::KeyGrab(Key key)
{
    Display* display = display_.get();
    int major = 2;
    int minor = 2;
    ::XIQueryVersion(display, &major, &minor);
    const KeyCode code = ::XKeysymToKeycode(display, static_cast<KeySym>(key));
    const InputDevices devices(display);
    for (const XIDeviceInfo& device : devices.all()) {
        if (device.use == XISlaveKeyboard && grab(display, device.deviceid, code) > 0)
            throw HarnessError("somebody else holds the key");
    }
    ::XSync(display, False);
}

bool isHeldWithAlt(Key key)
{
    const XDisplay keymap;
    const KeyCode code = ::XKeysymToKeycode(keymap.get(), static_cast<KeySym>(key));
    const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection(
        ::xcb_connect(nullptr, nullptr), &::xcb_disconnect);
    const xcb_window_t root = ::xcb_setup_roots_iterator(::xcb_get_setup(connection.get())).data->root;
    const auto request = ::xcb_grab_key_checked(connection.get(), 0, root, XCB_MOD_MASK_1, code,
                                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const std::unique_ptr<xcb_generic_error_t, void (*)(void*)> error(
        ::xcb_request_check(connection.get(), request), &std::free);
    return error != nullptr && error->error_code == XCB_ACCESS;
}

} // namespace corvandi::harness
