#pragma once

namespace corvandi {

/// Whether the X11 desktop of the application can show translucency now. Two round trips to the X
/// server; false where there is none. Thread: main thread only.
[[nodiscard]] bool isCompositorRunning();

} // namespace corvandi
