#include "platform/linux/workspace/mime_applications.h"

#include "platform/linux/workspace/key_file.h"

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

} // namespace corvandi
