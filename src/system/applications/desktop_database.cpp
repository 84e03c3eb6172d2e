#include "system/applications/desktop_database.h"

#include "system/applications/desktop_entry.h"

#include <algorithm>

namespace corvandi {
namespace {

QStringList identifiers(const QByteArray& list, const QByteArray& group, const QByteArray& type)
{
    QStringList result;
    forEachKey(list, group, [&](const QByteArray& key, const QString& value) {
        if (key != type)
            return;
        for (QString item : listItems(value)) {
            if (item.endsWith(QLatin1String(".desktop")))
                item.chop(8);
            result.append(item);
        }
    });
    return result;
}

const DesktopEntry* entryWithId(const std::vector<DesktopEntry>& entries, const QString& id)
{
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&](const DesktopEntry& entry) { return entry.id == id; });
    return found == entries.end() ? nullptr : &*found;
}

bool isFileManager(const DesktopEntry& entry)
{
    return entry.categories.contains(QLatin1String("FileManager"));
}

} // namespace

MimeApplications mimeApplications(const std::vector<QByteArray>& lists, const QByteArray& type)
{
    MimeApplications result;
    for (const QByteArray& list : lists) {
        result.defaults += identifiers(list, "Default Applications", type);
        // A list takes back only what lists of less precedence add.
        for (const QString& id : identifiers(list, "Added Associations", type)) {
            if (!result.removed.contains(id))
                result.added.append(id);
        }
        result.removed += identifiers(list, "Removed Associations", type);
    }
    return result;
}

QString fileManagerAmong(const std::vector<DesktopEntry>& entries, const MimeApplications& folderApplications)
{
    for (const QString& id : folderApplications.defaults) {
        if (entryWithId(entries, id))
            return id;
    }
    for (const QString& id : folderApplications.added) {
        const DesktopEntry* entry = entryWithId(entries, id);
        if (entry && isFileManager(*entry))
            return id;
    }
    for (const DesktopEntry& entry : entries) {
        const bool opensFolders = entry.mimeTypes.contains(QString::fromLatin1(folderMimeType));
        if (opensFolders && isFileManager(entry) && !folderApplications.removed.contains(entry.id))
            return entry.id;
    }
    return {};
}

namespace {

/// An installation writes many files; read once, when it has settled.
constexpr std::chrono::milliseconds settleTime{500};

} // namespace

DesktopDatabase::DesktopDatabase(MainQueue& queue, DesktopPaths paths)
    : queue_(queue)
    , paths_(std::move(paths))
{
    QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &watcher_, [this] { readLater(); });
    read();
}

DesktopDatabase::~DesktopDatabase() = default;

void DesktopDatabase::readLater()
{
    if (reading_)
        changedMeanwhile_ = true;
    else if (!settling_)
        settling_ = queue_.after(settleTime, [this] { read(); });
}

void DesktopDatabase::read()
{
    settling_.reset();
    reading_ = std::make_unique<Errand<DesktopFiles>>(
        worker_, queue_,
        [paths = paths_](const std::stop_token& stop) { return readDesktopFiles(paths, stop); },
        [this](DesktopFiles files) { take(std::move(files)); });
}

void DesktopDatabase::take(DesktopFiles files)
{
    const DesktopFiles former = std::exchange(files_, std::move(files));
    reading_.reset();
    const bool hasNewWatches = watch(files_.foldersToWatch);
    // Nobody told of what changed in a folder before it was watched. Folders that can't be watched are no
    // reason to read for ever, hence the comparison.
    const bool missedChanges = hasNewWatches || files_.foldersToWatch != former.foldersToWatch;
    if (std::exchange(changedMeanwhile_, false) || missedChanges)
        readLater();
}

bool DesktopDatabase::watch(const QStringList& folders)
{
    const QStringList watched = watcher_.directories();
    bool hasNewWatches = false;
    for (const QString& folder : watched) {
        if (!folders.contains(folder))
            watcher_.removePath(folder);
    }
    for (const QString& folder : folders) {
        if (!watched.contains(folder) && watcher_.addPath(folder))
            hasNewWatches = true;
    }
    return hasNewWatches;
}

} // namespace corvandi
