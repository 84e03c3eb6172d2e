#include "platform/linux/audio/pulse_capture_authorization.h"

#include "platform/linux/audio/microphone_permission.h"

#include <QDBusPendingCallWatcher>

namespace corvandi {

PulseCaptureAuthorization::PulseCaptureAuthorization(PulseServer& server, MainQueue& queue,
                                                     std::optional<QString> sandboxedId)
    : server_(server)
    , mailbox_(queue)
    , sandboxedId_(std::move(sandboxedId))
{
    refresh();
}

PulseCaptureAuthorization::~PulseCaptureAuthorization() = default;

AuthorizationStatus PulseCaptureAuthorization::status()
{
    refresh();
    return knownStatus();
}

void PulseCaptureAuthorization::requestAccess(std::function<void(bool granted)> answered)
{
    waiting_.push_back(std::move(answered));
    refresh();
    if (!lookup_)
        mailbox_.post([this] { refreshed(); });
}

void PulseCaptureAuthorization::refresh()
{
    if (!sandboxedId_ || lookup_)
        return;
    lookup_ = std::make_unique<QDBusPendingCallWatcher>(askForMicrophonePermissions());
    QObject::connect(lookup_.get(), &QDBusPendingCallWatcher::finished, lookup_.get(), [this] {
        stored_ = microphonePermission(*lookup_, *sandboxedId_);
        lookup_.release()->deleteLater();
        refreshed();
    });
}

void PulseCaptureAuthorization::refreshed()
{
    const bool isGranted = knownStatus() != AuthorizationStatus::denied;
    const auto waiting = std::exchange(waiting_, {});
    for (const auto& answered : waiting)
        answered(isGranted);
}

AuthorizationStatus PulseCaptureAuthorization::knownStatus() const
{
    if (server_.refusesAccess())
        return AuthorizationStatus::denied;
    return sandboxedId_ ? stored_ : AuthorizationStatus::authorized;
}

} // namespace corvandi
