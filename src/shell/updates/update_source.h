#pragma once

#include "base/main_queue.h"
#include "shell/updates/release.h"
#include "shell/updates/update_failure.h"

#include <functional>
#include <memory>
#include <optional>

namespace corvandi {

/// A package that was downloaded and found to be the signed one. Destroying it removes its file, unless
/// it was handed to the installer.
///
/// Thread: main thread only. Its source outlives it.
class UpdatePackage {
public:
    /// Nothing when the system's installer was started.
    using Opened = std::function<void(std::optional<UpdateFailure>)>;

    virtual ~UpdatePackage() = default;

    /// Checks once more that the file is the signed one and opens it with the application that the
    /// desktop has for such files; nothing in it is run by this program. From then on the file is kept,
    /// also when nothing could open it (the failure's detail tells where it lies). A file that has
    /// changed meanwhile is `tampered`, and not opened.
    [[nodiscard]] virtual std::unique_ptr<Registration> open(Opened opened) = 0;
};

/// How much of a package has arrived, in bytes; `received` never exceeds `total`.
struct DownloadProgress {
    int64_t received = 0;
    int64_t total = 0;
};

/// The place where this program's updates lie. It fetches and verifies; what is done with an update is
/// decided elsewhere.
///
/// Thread: main thread only; no call waits for the network or the disk. Callbacks come later, never
/// inside the call that asked for them, and not after their registration was destroyed: that cancels
/// the operation, closes its connection and removes what it has stored. The source outlives them.
class UpdateSource {
public:
    using FeedHandler = std::function<void(UpdateResult<Release>)>;
    using ProgressHandler = std::function<void(DownloadProgress)>;
    using PackageHandler = std::function<void(UpdateResult<std::unique_ptr<UpdatePackage>>)>;

    virtual ~UpdateSource() = default;

    /// Whether this program was built with a place to look at. If not, nothing else may be called.
    [[nodiscard]] virtual bool isConfigured() const = 0;
    /// Fetches the feed and checks its signature. Sends nothing but the request for it.
    [[nodiscard]] virtual std::unique_ptr<Registration> fetchFeed(FeedHandler handler) = 0;
    /// Fetches a release's package and checks that it is the signed one. Progress is told some ten times
    /// a second at most.
    [[nodiscard]] virtual std::unique_ptr<Registration>
    fetchPackage(const Release& release, ProgressHandler progress, PackageHandler handler) = 0;
};

} // namespace corvandi
