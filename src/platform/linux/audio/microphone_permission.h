#pragma once

#include "platform/capture_authorization.h"

#include <QDBusPendingCall>
#include <QString>

namespace corvandi {

/// Asks the desktop's permission store about the microphone, without waiting for the answer.
[[nodiscard]] QDBusPendingCall askForMicrophonePermissions();

/// What the store's answer says about the sandboxed application `applicationId`: "not determined" when
/// the store knows nothing of it or could not be asked.
[[nodiscard]] AuthorizationStatus microphonePermission(const QDBusPendingCall& answer,
                                                       const QString& applicationId);

} // namespace corvandi
