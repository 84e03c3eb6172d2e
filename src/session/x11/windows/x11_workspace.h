#pragma once

#include "ports/workspace.h"
#include "session/x11/windows/window_reader.h"
#include "session/x11/xcb_connection.h"
#include "system/applications/application_identity.h"
#include "system/applications/desktop_database.h"

namespace corvandi {

/// The applications of an X11 desktop: the window that the window manager calls active, and the
/// desktop files that tell whose it is.
///
/// An identifier is the name of the application's desktop file without its suffix; of an application
/// without one it is the name of its executable. The file manager and the desktop are reported as
/// `fileManagerIdentifier`, windows of this process as this program.
///
/// A call takes three round trips to the X server (well under a millisecond) and never touches the
/// desktop files: those are read by a thread from construction on. Until that is done, some tens of
/// milliseconds, applications are told by their executable. A window that closes during a call, an X
/// server that has gone and a desktop without a (modern) window manager give no application.
///
/// Thread: main thread only.
class X11Workspace : public Workspace {
public:
    explicit X11Workspace(MainQueue& queue, DesktopPaths paths = DesktopPaths::fromEnvironment());

    [[nodiscard]] std::optional<QString> frontmostApplication() override;
    [[nodiscard]] std::optional<pid_t> frontmostProcess() override;
    [[nodiscard]] std::optional<QString> ownIdentifier() const override;

    /// What kind of application the active window belongs to; terminals differ in what "paste" is.
    [[nodiscard]] ApplicationKind frontmostKind() const;

    [[nodiscard]] const DesktopDatabase& applications() const { return applications_; }

private:
    [[nodiscard]] std::optional<ApplicationIdentity> frontmost() const;

    XcbConnection x_;
    FrontWindowReader frontWindow_;
    DesktopDatabase applications_;
};

} // namespace corvandi
