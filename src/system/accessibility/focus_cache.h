#pragma once

#include "ports/focused_element.h"
#include "system/accessibility/accessible_object.h"

#include <QHash>

#include <mutex>
#include <optional>

#include <sys/types.h>

namespace corvandi {

/// The element that had the focus last, for each application on the accessibility bus.
///
/// Thread: any. The lock is held for a look into a table, never while anything is asked.
class FocusCache {
public:
    /// `process` is the one behind the object's bus name.
    void store(const ObjectRef& object, pid_t process, const FocusedElement& element);
    void forget(const QString& bus);
    void clear();

    /// The newest element of that process, which may be on the bus under several names.
    [[nodiscard]] std::optional<FocusedElement> elementOf(pid_t process) const;
    [[nodiscard]] std::optional<ObjectRef> objectOf(const QString& bus) const;
    [[nodiscard]] QStringList busNamesOf(pid_t process) const;

private:
    struct Entry {
        QString path;
        pid_t process = 0;
        FocusedElement element;
        /// Counts up with each element stored.
        uint64_t order = 0;
    };

    mutable std::mutex mutex_;
    QHash<QString, Entry> entries_;
    uint64_t stored_ = 0;
};

} // namespace corvandi
