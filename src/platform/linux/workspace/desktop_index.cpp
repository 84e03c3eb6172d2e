#include "platform/linux/workspace/desktop_index.h"

namespace corvandi {
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

} // namespace corvandi
