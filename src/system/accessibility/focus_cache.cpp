#include "system/accessibility/focus_cache.h"

namespace corvandi {

void FocusCache::store(const ObjectRef& object, pid_t process, const FocusedElement& element)
{
    const std::lock_guard guard(mutex_);
    entries_.insert(object.bus, {object.path, process, element, ++stored_});
}

void FocusCache::forget(const QString& bus)
{
    const std::lock_guard guard(mutex_);
    entries_.remove(bus);
}

void FocusCache::clear()
{
    const std::lock_guard guard(mutex_);
    entries_.clear();
}

std::optional<FocusedElement> FocusCache::elementOf(pid_t process) const
{
    const std::lock_guard guard(mutex_);
    const Entry* newest = nullptr;
    for (const Entry& entry : entries_) {
        if (entry.process == process && (!newest || entry.order > newest->order))
            newest = &entry;
    }
    return newest ? std::optional(newest->element) : std::nullopt;
}

std::optional<ObjectRef> FocusCache::objectOf(const QString& bus) const
{
    const std::lock_guard guard(mutex_);
    const auto entry = entries_.find(bus);
    return entry == entries_.end() ? std::nullopt : std::optional(ObjectRef{bus, entry->path});
}

QStringList FocusCache::busNamesOf(pid_t process) const
{
    const std::lock_guard guard(mutex_);
    QStringList names;
    for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
        if (entry->process == process)
            names.append(entry.key());
    }
    return names;
}

} // namespace corvandi
