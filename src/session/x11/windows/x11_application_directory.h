#pragma once

#include "ports/application_directory.h"
#include "session/x11/windows/window_reader.h"
#include "session/x11/xcb_connection.h"
#include "system/applications/application_identity.h"
#include "system/applications/desktop_database.h"

#include <QStringList>

namespace corvandi {

/// The applications of an X11 desktop: the windows that the window manager lists, and the desktop files
/// that tell whose they are and what else is installed. Identifiers are those of `X11Workspace`; only
/// applications with a desktop file have a name or an icon.
///
/// An application is as regular as each of its windows: one that has a panel and an ordinary window comes
/// twice. Without a (modern) window manager or an X server nothing runs; until the desktop files are read,
/// some tens of milliseconds after the start, nothing is installed.
///
/// Thread: main thread only. A call never touches the disk, save for names of processes without a desktop
/// file; all windows together cost two to three round trips to the X server.
class X11ApplicationDirectory : public ApplicationDirectory {
public:
    /// `applications` outlives it. `desktops`: the session's, as XDG_CURRENT_DESKTOP names them; menus of
    /// other desktops offer other applications.
    explicit X11ApplicationDirectory(const DesktopDatabase& applications,
                                     QStringList desktops = desktopsFromEnvironment());

    [[nodiscard]] static QStringList desktopsFromEnvironment();

    [[nodiscard]] std::vector<RunningApplication> runningApplications() override;
    [[nodiscard]] std::vector<InstalledApplication> installedApplications() override;
    [[nodiscard]] std::optional<QString> iconOf(const QString& bundleID) override;

private:
    [[nodiscard]] std::vector<FrontWindow> listedWindows() const;
    [[nodiscard]] RunningApplication applicationOf(const FrontWindow& window) const;
    [[nodiscard]] const DesktopEntry* entryOf(const QString& bundleID) const;

    const DesktopDatabase& applications_;
    QStringList desktops_;
    XcbConnection x_;
    WindowReader windows_;
    xcb_atom_t netClientList_;
};

} // namespace corvandi
