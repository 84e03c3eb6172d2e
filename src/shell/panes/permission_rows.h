#pragma once

#include "base/main_queue.h"
#include "ports/system_settings.h"
#include "shell/permissions/permissions_model.h"

#include <QString>

#include <functional>
#include <memory>

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

/// What the first run shows: the permissions, kept current while it is on the screen, and one way out,
/// which never depends on them.
///
/// Thread: main thread only. The referees outlive it.
class Welcome {
public:
    Welcome(PermissionsModel& permissions, MainQueue& queue, std::function<void()> onGetStarted);

    [[nodiscard]] PermissionsModel& permissions() const { return permissions_; }
    [[nodiscard]] PermissionRows rows() const { return welcomeRows(permissions_); }
    [[nodiscard]] QString buttonTitle() const;
    void getStarted() const;

    /// Looks at the permissions now, and again every second until all are granted.
    void appear();
    void disappear();

private:
    PermissionsModel& permissions_;
    MainQueue& queue_;
    std::function<void()> onGetStarted_;
    std::unique_ptr<Timer> ticks_;
};

} // namespace corvandi
