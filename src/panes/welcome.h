#pragma once

#include "base/main_queue.h"
#include "panes/permission_rows.h"

#include <functional>
#include <memory>

namespace corvandi {

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
