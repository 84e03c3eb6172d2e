#include "platform/linux/workspace/desktop_database.h"

namespace corvandi {
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
    if (isReading_)
        changedMeanwhile_ = true;
    else if (!settling_)
        settling_ = queue_.after(settleTime, [this] { read(); });
}

void DesktopDatabase::read()
{
    settling_.reset();
    isReading_ = true;
    worker_ =
        std::jthread([this, paths = paths_, alive = std::weak_ptr(alive_)](const std::stop_token& stop) {
            auto files = std::make_shared<const DesktopFiles>(readDesktopFiles(paths, stop));
            if (stop.stop_requested())
                return;
            queue_.async([this, alive, files] {
                if (!alive.expired())
                    take(files);
            });
        });
}

void DesktopDatabase::take(std::shared_ptr<const DesktopFiles> files)
{
    const auto former = std::exchange(files_, std::move(files));
    isReading_ = false;
    const bool hasNewWatches = watch(files_->foldersToWatch);
    // Nobody told of what changed in a folder before it was watched. Folders that can't be watched are no
    // reason to read for ever, hence the comparison.
    const bool missedChanges = hasNewWatches || files_->foldersToWatch != former->foldersToWatch;
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
