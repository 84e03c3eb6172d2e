#pragma once

#include "base/worker.h"
#include "system/applications/desktop_entry.h"
#include "system/applications/desktop_files.h"

#include <QFileSystemWatcher>
#include <QStringList>

#include <memory>
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

/// The index of installed applications, kept current: read by a thread of its own when it is created, and
/// again half a second after a folder with desktop files has changed. A reading tells which folders there
/// are to watch; when it finds other ones than were watched while it went on, as the first one does, another
/// reading follows, so that no change falls in between. A file that is edited in place, rather than
/// replaced, is noticed only with the next change of its folder.
///
/// Thread: main thread only; nothing here waits for the disk, save that destroying it during a reading
/// waits for the file that is being read, for some seconds at most.
class DesktopDatabase {
public:
    DesktopDatabase(MainQueue& queue, DesktopPaths paths);
    ~DesktopDatabase();
    DesktopDatabase(const DesktopDatabase&) = delete;
    DesktopDatabase& operator=(const DesktopDatabase&) = delete;

    /// What is known at present: nothing in the first milliseconds. Valid until the event loop runs on.
    [[nodiscard]] const DesktopIndex& index() const { return files_.index; }

private:
    void read();
    void readLater();
    void take(DesktopFiles files);
    /// Watches these folders and no others; true when it began to watch one.
    bool watch(const QStringList& folders);

    MainQueue& queue_;
    DesktopPaths paths_;
    DesktopFiles files_;
    QFileSystemWatcher watcher_;
    std::unique_ptr<Timer> settling_;
    bool changedMeanwhile_ = false;
    Worker worker_{QStringLiteral("applications"), Worker::AtEnd::stop};
    /// While it goes on.
    std::unique_ptr<Registration> reading_;
};

} // namespace corvandi
