#include "shell/permissions/permissions_model.h"

#include <QPointer>

namespace corvandi {
namespace {

PermissionState stateOf(AuthorizationStatus status)
{
    switch (status) {
    case AuthorizationStatus::authorized:
        return PermissionState::granted;
    case AuthorizationStatus::notDetermined:
        return PermissionState::notDetermined;
    case AuthorizationStatus::restricted:
    case AuthorizationStatus::denied:
        break;
    }
    return PermissionState::denied;
}

} // namespace

PermissionsModel::PermissionsModel(CaptureAuthorization& capture, AccessibilityClient& accessibility)
    : capture_(capture)
    , client_(accessibility)
{
}

bool PermissionsModel::allGranted() const
{
    return microphone_ == PermissionState::granted && accessibility_ == PermissionState::granted;
}

void PermissionsModel::refresh()
{
    const PermissionState microphone = stateOf(capture_.status());
    const PermissionState accessibility =
        client_.isProcessTrusted(TrustPrompt::silent) ? PermissionState::granted : PermissionState::denied;
    if (microphone == microphone_ && accessibility == accessibility_)
        return;
    microphone_ = microphone;
    accessibility_ = accessibility;
    Q_EMIT changed();
}

void PermissionsModel::requestMicrophone()
{
    // The state always comes from a fresh look, never from the answer itself.
    capture_.requestAccess([self = QPointer(this)](bool) {
        if (self)
            self->refresh();
    });
}

void PermissionsModel::requestAccessibility()
{
    (void)client_.isProcessTrusted(TrustPrompt::askPerson);
}

} // namespace corvandi
