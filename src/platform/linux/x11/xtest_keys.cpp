#include "platform/linux/x11/xtest_keys.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace corvandi {

void fakeKey(const X11Connection& connection, uint8_t keyCode, KeyDirection direction)
{
    const uint8_t type = direction == KeyDirection::down ? XCB_KEY_PRESS : XCB_KEY_RELEASE;
    xcb_test_fake_input(connection.get(), type, keyCode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

void fakeDeviceKey(const X11Connection& connection, uint16_t device, uint8_t keyCode, KeyDirection direction)
{
    const int offset =
        direction == KeyDirection::down ? XCB_INPUT_DEVICE_KEY_PRESS : XCB_INPUT_DEVICE_KEY_RELEASE;
    xcb_test_fake_input(connection.get(), static_cast<uint8_t>(connection.xinputFirstEvent() + offset),
                        keyCode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, static_cast<uint8_t>(device));
}

} // namespace corvandi
