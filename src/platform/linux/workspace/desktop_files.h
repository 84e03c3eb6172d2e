#pragma once

#include "platform/linux/workspace/desktop_index.h"

#include <QStringList>

#include <stop_token>

namespace corvandi {

/// Where the desktop's files about applications lie; in both lists the first has most precedence.
struct DesktopPaths {
    QStringList applicationFolders;
    QStringList mimeAppsLists;
    /// The languages in which applications are to be named, see `desktopLocales`.
    QStringList locales = {};

    /// As the XDG_* variables (or their standard defaults) say.
    [[nodiscard]] static DesktopPaths fromEnvironment();
};

/// What was read, and what must be watched to learn that it has changed.
struct DesktopFiles {
    DesktopIndex index;
    /// Existing folders only.
    QStringList foldersToWatch;
};

/// Reads everything: 15 to 22 ms for 300 applications with 60 translations each. Files that can't be read are
/// left out. Returns early, with part of it, when `stop` is requested.
///
/// Thread: any.
[[nodiscard]] DesktopFiles readDesktopFiles(const DesktopPaths& paths, const std::stop_token& stop);

} // namespace corvandi
