#pragma once

#include "system/applications/desktop_files.h"

#include <QString>

#include <optional>

#include <sys/types.h>

namespace corvandi {

/// What a window says about itself.
struct FrontWindow {
    /// The application identifier that it carries (on X11 _GTK_APPLICATION_ID); empty when absent.
    QString gtkApplicationId;
    /// Its class (on X11 the second half of WM_CLASS); empty when absent.
    QString windowClass;
    /// The local process that owns it; nothing when that can't be told, as for a client on another machine.
    std::optional<pid_t> process;
    /// It is the desktop's background with its icons.
    bool isDesktop = false;
    /// It is a window of its own, not a panel, a palette, a part of the desktop, or kept out of the lists
    /// of windows.
    bool isRegular = true;
};

enum class ApplicationKind {
    ordinary,
    terminal,
    /// A terminal without a shortcut that pastes the clipboard, unless its user has made one.
    terminalWithoutPaste,
};

struct ApplicationIdentity {
    /// The desktop-file identifier, or what comes nearest to one; empty when it can't be told.
    QString id;
    ApplicationKind kind = ApplicationKind::ordinary;
    /// What menus call it; empty for one without a desktop file.
    QString name = {};
};

/// Under this the windows of this process are reported.
inline const QString programIdentifier = QStringLiteral("io.corvandi.Corvandi");

/// The identifier under which the file manager and the desktop itself are reported: the one that the
/// rules about where text may be inserted know.
inline const QString fileManagerIdentifier = QStringLiteral("com.apple.finder");

/// Tells the application of a window: by the application identifier that it carries or by its class among
/// the installed applications, else by that identifier alone, by its executable's name, at last by the
/// bare class.
[[nodiscard]] ApplicationIdentity identify(const FrontWindow& window, const DesktopIndex& applications);
/// The identifier under which windows of an installed application are reported.
[[nodiscard]] QString identifierOf(const DesktopEntry& entry, const DesktopIndex& applications);

} // namespace corvandi
