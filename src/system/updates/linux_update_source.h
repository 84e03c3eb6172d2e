#pragma once

#include "base/main_queue.h"
#include "shell/updates/update_source.h"
#include "system/updates/http_download.h"
#include "system/updates/update_configuration.h"
#include "system/updates/update_thread.h"

#include <QString>

#include <chrono>
#include <optional>

namespace corvandi {

/// How long the update server is waited for.
struct UpdatePatience {
    HttpPatience feed{std::chrono::seconds(20), std::chrono::seconds(60)};
    HttpPatience package{std::chrono::seconds(30), std::chrono::hours(1)};
};

/// Updates from a web server. Files are fetched, checked and removed on a thread of its own, which is
/// started with the first check; without one this object costs nothing.
///
/// A package is stored in a folder of its own, readable for the user alone. It is removed when the person
/// declines or anything fails; one that was given to the installer stays until the next download.
///
/// Thread: main thread only. Everything that it has given out goes before it; it may take some
/// milliseconds to go, for the thread to end.
class LinuxUpdateSource : public UpdateSource {
public:
    /// Without a configuration there is nowhere to look. `queue` outlives this object.
    LinuxUpdateSource(std::optional<UpdateConfiguration> configuration, MainQueue& queue,
                      QString folder = defaultFolder(), const UpdatePatience& patience = {});

    /// $XDG_CACHE_HOME/Corvandi/updates, with ~/.cache when the variable is not set.
    [[nodiscard]] static QString defaultFolder();

    [[nodiscard]] bool isConfigured() const override;
    [[nodiscard]] std::unique_ptr<Registration> fetchFeed(FeedHandler handler) override;
    [[nodiscard]] std::unique_ptr<Registration> fetchPackage(const Release& release, ProgressHandler progress,
                                                             PackageHandler handler) override;

private:
    std::optional<UpdateConfiguration> configuration_;
    MainQueue& queue_;
    QString folder_;
    UpdatePatience patience_;
    UpdateThread thread_;
};

} // namespace corvandi
