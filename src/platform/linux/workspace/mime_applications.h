#pragma once

#include "platform/linux/workspace/desktop_entry.h"

#include <QStringList>

#include <vector>

namespace corvandi {

/// What the mimeapps.list files say about one type of file. Identifiers without suffix, the preferred
/// one first.
struct MimeApplications {
    QStringList defaults;
    QStringList added;
    QStringList removed;
};

/// Merges the contents of the mimeapps.list files, those with more precedence first.
[[nodiscard]] MimeApplications mimeApplications(const std::vector<QByteArray>& lists, const QByteArray& type);

/// The identifier of the installed application that opens folders: the person's or the system's
/// default, else one that was associated with folders and is a file manager by its own categories
/// (editors and disk viewers declare that they open folders, too). Empty when there is none.
[[nodiscard]] QString fileManagerAmong(const std::vector<DesktopEntry>& entries,
                                       const MimeApplications& folderApplications);

/// The type of file that a folder is.
inline const QByteArray folderMimeType = QByteArrayLiteral("inode/directory");

} // namespace corvandi
