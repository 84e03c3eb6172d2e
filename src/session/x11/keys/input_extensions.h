#pragma once

namespace corvandi {

/// Whether the X server lets a program watch keys and post them: XInput 2.2 or newer, XKB and XTEST.
/// False without a server. Takes a connection of its own and four round trips.
[[nodiscard]] bool hasInputExtensions();

} // namespace corvandi
