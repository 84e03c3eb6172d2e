#pragma once

#include "permissions/permissions_model.h"
#include "platform/system_settings.h"

#include <QString>

#include <functional>

namespace corvandi {

/// One permission, as it is shown. Its state is the model's at the moment when the row was made.
struct PermissionRow {
    QString title;
    /// Explains it in one line.
    QString detail;
    PermissionState state = PermissionState::notDetermined;
    /// What the button does that is there until it is granted.
    std::function<void()> grant;
};

struct PermissionRows {
    PermissionRow microphone;
    PermissionRow accessibility;
};

/// The permissions page of the settings.
///
/// Thread: main thread only. The referees outlive it and its rows.
class PermissionsPane {
public:
    PermissionsPane(PermissionsModel& permissions, SystemSettings& systemSettings);

    [[nodiscard]] PermissionsModel& permissions() const { return permissions_; }
    /// Asking for accessibility also opens the desktop's settings, where it is granted.
    [[nodiscard]] PermissionRows rows() const;
    [[nodiscard]] static QString note();

private:
    PermissionsModel& permissions_;
    SystemSettings& systemSettings_;
};

/// The rows of the welcome, where asking is all that a button does.
[[nodiscard]] PermissionRows welcomeRows(PermissionsModel& permissions);

} // namespace corvandi
