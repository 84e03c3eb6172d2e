#pragma once

#include "harness/bus_connection.h"
#include "harness/menu_layout.h"
#include "harness/waiting.h"

#include <string>
#include <vector>

namespace corvandi::harness {

/// The menu of a program's tray icon, as the desktop's tray gets it over the session's bus.
class TrayMenu {
public:
    /// Waits until the tray shows an icon of that process; trays may go on showing those of processes that
    /// were killed. Throws HarnessError when none comes.
    explicit TrayMenu(pid_t process);

    /// The icon that the program names.
    [[nodiscard]] std::string iconName() const;

    /// The lines from top to bottom: the label, in brackets if it can be chosen, and the shortcut; "---" for
    /// a divider.
    [[nodiscard]] std::vector<std::string> lines() const;
    /// Waits until the first line says this; false when `deadline` passes first.
    [[nodiscard]] bool waitForStatus(const std::string& line,
                                     Clock::time_point deadline = Clock::now() + patience) const;
    /// Chooses the line with that label; returns the moment right before the program is told. Throws
    /// HarnessError when there is none.
    Clock::time_point choose(const std::string& label) const;

private:
    [[nodiscard]] std::vector<MenuLine> layout() const;

    std::shared_ptr<BusConnection> bus_ = BusConnection::toSession();
    BusConnection::Target menu_;
};

} // namespace corvandi::harness
