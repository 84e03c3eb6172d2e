#include "system/applications/desktop_files.h"

#include "base/locale.h"
#include "system/applications/desktop_database.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSet>
#include <QStandardPaths>

namespace corvandi {

QStringList desktopLocales(const QString& localeName)
{
    const QString modifierPart = localeName.section(QLatin1Char('@'), 1);
    const QString modifier = modifierPart.isEmpty() ? QString() : QLatin1Char('@') + modifierPart;
    const QString withCountry = localeName.section(QLatin1Char('@'), 0, 0).section(QLatin1Char('.'), 0, 0);
    const QString language = withCountry.section(QLatin1Char('_'), 0, 0);
    if (language.isEmpty() || language == QLatin1String("C") || language == QLatin1String("POSIX"))
        return {};
    QStringList locales{withCountry + modifier, withCountry, language + modifier, language};
    locales.removeDuplicates();
    return locales;
}

namespace {

void addFirst(QHash<QString, size_t>& lookup, const QString& name, size_t position)
{
    const QString key = name.toLower();
    if (!key.isEmpty() && !lookup.contains(key))
        lookup.insert(key, position);
}

} // namespace

DesktopIndex::DesktopIndex(std::vector<DesktopEntry> entries, QString fileManagerId)
    : entries_(std::move(entries))
    , fileManagerId_(std::move(fileManagerId))
{
    // Of several entries with one name, the one that a person sees in the menus is meant.
    for (const bool noDisplay : {false, true}) {
        for (size_t position = 0; position < entries_.size(); ++position) {
            if (entries_[position].noDisplay == noDisplay)
                addNames(position);
        }
    }
}

void DesktopIndex::addNames(size_t position)
{
    const DesktopEntry& entry = entries_[position];
    addFirst(byId_, entry.id, position);
    addFirst(byWmClass_, entry.startupWmClass, position);
    addFirst(byLastPartOfId_, entry.id.section(QLatin1Char('.'), -1), position);
    addFirst(byExecutable_, entry.executable, position);
}

const DesktopEntry* DesktopIndex::find(const Lookup& lookup, const QString& name) const
{
    const auto found = lookup.constFind(name.toLower());
    return found == lookup.constEnd() ? nullptr : &entries_[*found];
}

const DesktopEntry* DesktopIndex::withId(const QString& id) const
{
    return find(byId_, id);
}

const DesktopEntry* DesktopIndex::withWindowClass(const QString& windowClass) const
{
    for (const Lookup* lookup : {&byWmClass_, &byId_, &byLastPartOfId_, &byExecutable_}) {
        if (const DesktopEntry* entry = find(*lookup, windowClass))
            return entry;
    }
    return nullptr;
}

namespace {

/// Far more than any desktop file has; something else that was put there must not fill the memory.
constexpr qint64 largestFile = 1 << 20;

QStringList foldersIn(const char* variable, const QString& fallback)
{
    QStringList folders;
    const QString value = qEnvironmentVariable(variable);
    for (const QString& folder : (value.isEmpty() ? fallback : value).split(QLatin1Char(':'))) {
        // Relative paths are to be ignored.
        if (QDir::isAbsolutePath(folder))
            folders.append(QDir::cleanPath(folder));
    }
    folders.removeDuplicates();
    return folders;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(largestFile) : QByteArray();
}

class Reader {
public:
    Reader(QStringList locales, std::stop_token stop)
        : locales_(std::move(locales))
        , stop_(std::move(stop))
    {
    }

    void readApplications(const QString& folder)
    {
        watch(folder);
        QDirIterator files(folder, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot,
                           QDirIterator::Subdirectories);
        while (files.hasNext() && !stop_.stop_requested()) {
            const QString path = files.next();
            if (files.fileInfo().isDir())
                watch(path);
            else if (path.endsWith(QLatin1String(".desktop")))
                readEntry(path,
                          path.mid(folder.size() + 1).chopped(8).replace(QLatin1Char('/'), QLatin1Char('-')));
        }
    }

    void readMimeApps(const QString& path)
    {
        watch(QFileInfo(path).path());
        mimeAppsLists_.push_back(contentOf(path));
    }

    [[nodiscard]] DesktopFiles finish()
    {
        const QString fileManager =
            fileManagerAmong(entries_, mimeApplications(mimeAppsLists_, folderMimeType));
        foldersToWatch_.removeDuplicates();
        return {DesktopIndex(std::move(entries_), fileManager), foldersToWatch_};
    }

private:
    /// A folder that is not there yet shows in the nearest one that is.
    void watch(QString folder)
    {
        while (!QFileInfo(folder).isDir() && folder != QDir::rootPath())
            folder = QFileInfo(folder).path();
        foldersToWatch_.append(folder);
    }

    void readEntry(const QString& path, const QString& id)
    {
        if (seen_.contains(id))
            return;
        seen_.insert(id);
        auto entry = parseDesktopEntry(id, contentOf(path), locales_);
        if (!entry || entry->hidden)
            return;
        entry->isUnusable = !entry->requiredProgram.isEmpty() &&
                            QStandardPaths::findExecutable(entry->requiredProgram).isEmpty();
        entries_.push_back(std::move(*entry));
    }

    QStringList locales_;
    std::stop_token stop_;
    std::vector<DesktopEntry> entries_;
    std::vector<QByteArray> mimeAppsLists_;
    QSet<QString> seen_;
    QStringList foldersToWatch_;
};

} // namespace

DesktopPaths DesktopPaths::fromEnvironment()
{
    const QString home = QDir::homePath();
    const QStringList config = foldersIn("XDG_CONFIG_HOME", home + QStringLiteral("/.config")) +
                               foldersIn("XDG_CONFIG_DIRS", QStringLiteral("/etc/xdg"));
    const QStringList data = foldersIn("XDG_DATA_HOME", home + QStringLiteral("/.local/share")) +
                             foldersIn("XDG_DATA_DIRS", QStringLiteral("/usr/local/share:/usr/share"));
    DesktopPaths paths;
    paths.locales = desktopLocales(environmentLocaleName());
    for (const QString& folder : data)
        paths.applicationFolders.append(folder + QStringLiteral("/applications"));

    const QStringList desktops =
        qEnvironmentVariable("XDG_CURRENT_DESKTOP").toLower().split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString& folder : config + paths.applicationFolders) {
        for (const QString& desktop : desktops)
            paths.mimeAppsLists.append(folder + QLatin1Char('/') + desktop +
                                       QStringLiteral("-mimeapps.list"));
        paths.mimeAppsLists.append(folder + QStringLiteral("/mimeapps.list"));
    }
    return paths;
}

DesktopFiles readDesktopFiles(const DesktopPaths& paths, const std::stop_token& stop)
{
    Reader reader(paths.locales, stop);
    for (const QString& folder : paths.applicationFolders)
        reader.readApplications(folder);
    for (const QString& list : paths.mimeAppsLists)
        reader.readMimeApps(list);
    return reader.finish();
}

} // namespace corvandi
