#pragma once

#include <functional>

namespace corvandi {

enum class AuthorizationStatus { notDetermined = 0, restricted = 1, denied = 2, authorized = 3 };

/// Whether this program may use the microphone.
///
/// Thread: main thread only. Never blocks.
class CaptureAuthorization {
public:
    virtual ~CaptureAuthorization() = default;

    [[nodiscard]] virtual AuthorizationStatus status() = 0;
    /// Asks the person where the platform does that; `answered` gets the outcome, later.
    virtual void requestAccess(std::function<void(bool granted)> answered) = 0;
};

} // namespace corvandi
