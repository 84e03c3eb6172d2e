#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace corvandi {

/// An application that has windows now.
struct RunningApplication {
    std::optional<QString> bundleID;
    std::optional<QString> localizedName;
    /// An ordinary application, not an agent, a panel or a part of the desktop.
    bool isRegular = true;
};

/// An application that is installed.
struct InstalledApplication {
    std::optional<QString> bundleID;
    QString displayName;
    /// What its icon is called in the theme, or the path of a file; empty when it has none.
    QString icon;
};

/// The applications of this machine and session.
///
/// Thread: main thread only. At most a few milliseconds; no call waits for another program.
class ApplicationDirectory {
public:
    virtual ~ApplicationDirectory() = default;

    /// In the order in which the window manager lists them, one entry per window or process.
    [[nodiscard]] virtual std::vector<RunningApplication> runningApplications() = 0;
    /// Those that a menu would show and that have windows of their own, in no particular order.
    [[nodiscard]] virtual std::vector<InstalledApplication> installedApplications() = 0;
    /// The icon of an installed application; nothing when it is not installed or has none.
    [[nodiscard]] virtual std::optional<QString> iconOf(const QString& bundleID) = 0;
};

} // namespace corvandi
