#pragma once

#include "platform/linux/workspace/desktop_index.h"
#include "platform/linux/workspace/front_window.h"

#include <QString>

namespace corvandi {

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
