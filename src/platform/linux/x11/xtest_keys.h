#pragma once

#include "platform/keyboard.h"
#include "platform/linux/x11/x11_connection.h"

#include <cstdint>

namespace corvandi {

/// Queues a key event of the server's keyboard for synthetic keys. It is sent with the next flush.
void fakeKey(const X11Connection& connection, uint8_t keyCode, KeyDirection direction);
/// The same through one slave keyboard, as if its own key had moved.
void fakeDeviceKey(const X11Connection& connection, uint16_t device, uint8_t keyCode, KeyDirection direction);

} // namespace corvandi
