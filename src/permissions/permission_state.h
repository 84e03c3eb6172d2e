#pragma once

namespace corvandi {

/// Whether the system allows something to this program.
enum class PermissionState {
    granted = 0,
    /// Refused, restricted by policy, or (for accessibility) simply not trusted.
    denied = 1,
    /// The user has never been asked.
    notDetermined = 2,
};

} // namespace corvandi
