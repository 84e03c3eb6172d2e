#pragma once

#include "ports/accessibility_client.h"
#include "ports/capture_authorization.h"

#include <QObject>

namespace corvandi {

/// Whether the system allows something to this program.
enum class PermissionState {
    granted = 0,
    /// Refused, restricted by policy, or (for accessibility) simply not trusted.
    denied = 1,
    /// The user has never been asked.
    notDetermined = 2,
};

/// The two permissions that a dictation needs, as they were when last looked at. It never looks by itself:
/// its owner and the views that show it call `refresh`. `changed` follows real changes only.
///
/// Thread: main thread only. The referees outlive it.
class PermissionsModel : public QObject {
    Q_OBJECT

public:
    PermissionsModel(CaptureAuthorization& capture, AccessibilityClient& accessibility);

    [[nodiscard]] PermissionState microphone() const { return microphone_; }
    /// Never `notDetermined`.
    [[nodiscard]] PermissionState accessibility() const { return accessibility_; }
    [[nodiscard]] bool allGranted() const;

    /// Reads both, without asking anybody.
    void refresh();
    /// Has the platform ask the user, and refreshes when the answer is there.
    void requestMicrophone();
    /// Has the platform ask the user. The answer shows at the next refresh.
    void requestAccessibility();

Q_SIGNALS:
    void changed();

private:
    CaptureAuthorization& capture_;
    AccessibilityClient& client_;
    PermissionState microphone_ = PermissionState::notDetermined;
    PermissionState accessibility_ = PermissionState::denied;
};

} // namespace corvandi
