#pragma once

#include "base/main_queue.h"
#include "ports/capture_authorization.h"
#include "system/audio/pulse_server.h"

#include <QDBusPendingCall>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace corvandi {

/// Asks the desktop's permission store about the microphone, without waiting for the answer.
[[nodiscard]] QDBusPendingCall askForMicrophonePermissions();

/// What the store's answer says about the sandboxed application `applicationId`: "not determined" when
/// the store knows nothing of it or could not be asked.
[[nodiscard]] AuthorizationStatus microphonePermission(const QDBusPendingCall& answer,
                                                       const QString& applicationId);

/// The name under which a sandbox (Flatpak or Snap) runs this program and the desktop keeps its
/// permissions; nothing when it does not run in one.
[[nodiscard]] std::optional<QString> sandboxedApplicationId();

} // namespace corvandi

class QDBusPendingCallWatcher;

namespace corvandi {

/// Whether this program may use the microphone. In a sandbox the desktop's permission store says so;
/// outside of one there is no such control, and only a sound server that refuses us denies it.
///
/// `status` answers from memory and has the store asked again for the next time. Where the store has
/// no answer yet, the desktop asks the person when the microphone is first used; `requestAccess` then
/// counts as granted unless the store says no. A store that hangs is waited for 25 seconds.
class PulseCaptureAuthorization : public CaptureAuthorization {
public:
    /// `sandboxedId` is the program's name in its sandbox, nothing outside of one. `server` and `queue`
    /// must outlive the object.
    PulseCaptureAuthorization(PulseServer& server, MainQueue& queue, std::optional<QString> sandboxedId);
    ~PulseCaptureAuthorization() override;
    PulseCaptureAuthorization(const PulseCaptureAuthorization&) = delete;
    PulseCaptureAuthorization& operator=(const PulseCaptureAuthorization&) = delete;

    [[nodiscard]] AuthorizationStatus status() override;
    void requestAccess(std::function<void(bool granted)> answered) override;

private:
    void refresh();
    void refreshed();
    [[nodiscard]] AuthorizationStatus knownStatus() const;

    PulseServer& server_;
    Mailbox mailbox_;
    std::optional<QString> sandboxedId_;
    AuthorizationStatus stored_ = AuthorizationStatus::notDetermined;
    std::unique_ptr<QDBusPendingCallWatcher> lookup_;
    std::vector<std::function<void(bool)>> waiting_;
};

} // namespace corvandi
