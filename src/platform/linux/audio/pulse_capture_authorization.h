#pragma once

#include "base/main_queue.h"
#include "platform/capture_authorization.h"
#include "platform/linux/audio/main_thread_mailbox.h"
#include "platform/linux/audio/pulse_server.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

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
    MainThreadMailbox mailbox_;
    std::optional<QString> sandboxedId_;
    AuthorizationStatus stored_ = AuthorizationStatus::notDetermined;
    std::unique_ptr<QDBusPendingCallWatcher> lookup_;
    std::vector<std::function<void(bool)>> waiting_;
};

} // namespace corvandi
