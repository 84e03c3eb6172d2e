#pragma once

#include "base/locale.h"
#include "ports/application_directory.h"
#include "ports/workspace.h"

#include <QHash>
#include <QString>

#include <unicode/coll.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace corvandi {

/// The order of names in a language, without regard to letter case. Accents count.
class NameOrder {
public:
    explicit NameOrder(const Locale& locale);

    [[nodiscard]] bool isBefore(const QString& name, const QString& other) const;

private:
    /// Null when the system's collation data are missing; code points decide then.
    std::unique_ptr<icu::Collator> collator_;
};

/// Sorts things that have a `name`; those whose names compare equal keep their order.
template<class Named>
void sortByName(std::vector<Named>& things, const NameOrder& order)
{
    std::stable_sort(things.begin(), things.end(), [&order](const Named& thing, const Named& other) {
        return order.isBefore(thing.name, other.name);
    });
}

/// An application that can have rules of its own.
struct AppInfo {
    /// Two with the same one are the same application.
    QString bundleID;
    /// To be shown.
    QString name;

    friend bool operator==(const AppInfo&, const AppInfo&) = default;
};

/// The applications from which the user picks the one that rules are for. This program is never among
/// them. Holds no state: every call asks the platform afresh.
///
/// Thread: main thread only. The referees outlive it.
class AppCatalog {
public:
    /// Names are sorted as `locale`, the user's, has it.
    AppCatalog(ApplicationDirectory& directory, const Workspace& workspace, const Locale& locale);

    /// The ordinary applications that run now, each once, by name without regard to letter case. One
    /// without a name is called by its identifier.
    [[nodiscard]] std::vector<AppInfo> runningApps() const;
    /// The installed applications that are usable picks, each once, in the same order.
    [[nodiscard]] std::vector<AppInfo> installedApps() const;
    /// What a picked application is called in the vocabulary; nothing when it can't hold rules.
    [[nodiscard]] std::optional<AppInfo> usablePick(const InstalledApplication& application) const;
    /// A theme's icon name or the path of a file; for an application that is not installed or has no
    /// icon, the name of the icon that stands for any application.
    [[nodiscard]] QString icon(const QString& bundleID) const;

private:
    [[nodiscard]] bool isUsable(const std::optional<QString>& bundleID) const;
    [[nodiscard]] std::vector<AppInfo> listed(const std::vector<AppInfo>& apps) const;

    ApplicationDirectory& directory_;
    const Workspace& workspace_;
    Locale locale_;
};

} // namespace corvandi

template<>
struct std::hash<corvandi::AppInfo> {
    [[nodiscard]] std::size_t operator()(const corvandi::AppInfo& app) const noexcept
    {
        return qHash(app.bundleID);
    }
};
