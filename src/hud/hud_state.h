#pragma once

namespace corvandi {

/// The faces of the HUD.
enum class HUDState { recording, processing, notice, error };

} // namespace corvandi
