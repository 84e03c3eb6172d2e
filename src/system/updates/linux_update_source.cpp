#include "system/updates/linux_update_source.h"

#include "system/updates/feed_download.h"
#include "system/updates/package_download.h"
#include "system/updates/package_opening.h"
#include "system/updates/threaded_operation.h"

#include <QStandardPaths>

namespace corvandi {
namespace {

/// The main thread's handle on a file of which the update thread does everything.
class DownloadedPackage : public UpdatePackage {
public:
    DownloadedPackage(UpdateThread& thread, MainQueue& queue, std::shared_ptr<PackageFile> file,
                      Release release)
        : thread_(thread)
        , queue_(queue)
        , file_(std::move(file))
        , release_(std::move(release))
    {
    }
    ~DownloadedPackage() override
    {
        // Removing a large file takes its time.
        thread_.post([file = std::move(file_)]() mutable { file.reset(); });
    }
    DownloadedPackage(const DownloadedPackage&) = delete;
    DownloadedPackage& operator=(const DownloadedPackage&) = delete;

    [[nodiscard]] std::unique_ptr<Registration> open(Opened opened) override
    {
        const AnswerPath path(queue_);
        const Opened answer = [path,
                               opened = std::move(opened)](const std::optional<UpdateFailure>& failure) {
            path.send([opened, failure] { opened(failure); });
        };
        return std::make_unique<ThreadedOperation<PackageOpening>>(
            thread_, path, [file = file_, release = release_, answer] {
                return std::make_unique<PackageOpening>(file, release, answer);
            });
    }

private:
    UpdateThread& thread_;
    MainQueue& queue_;
    std::shared_ptr<PackageFile> file_;
    Release release_;
};

} // namespace

LinuxUpdateSource::LinuxUpdateSource(std::optional<UpdateConfiguration> configuration, MainQueue& queue,
                                     QString folder, const UpdatePatience& patience)
    : configuration_(std::move(configuration))
    , queue_(queue)
    , folder_(std::move(folder))
    , patience_(patience)
{
}

QString LinuxUpdateSource::defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/Corvandi/updates");
}

bool LinuxUpdateSource::isConfigured() const
{
    return configuration_.has_value();
}

std::unique_ptr<Registration> LinuxUpdateSource::fetchFeed(FeedHandler handler)
{
    const AnswerPath path(queue_);
    const FeedDownload::Finished answer =
        [path, handler = std::move(handler)](const UpdateResult<Release>& result) {
            path.send([handler, result] { handler(result); });
        };
    return std::make_unique<ThreadedOperation<FeedDownload>>(
        thread_, path, [configuration = configuration_.value(), patience = patience_.feed, answer] {
            return std::make_unique<FeedDownload>(configuration.feed, configuration.key, patience, answer);
        });
}

std::unique_ptr<Registration>
LinuxUpdateSource::fetchPackage(const Release& release, ProgressHandler progress, PackageHandler handler)
{
    const AnswerPath path(queue_);
    const ProgressHandler told = [path, progress = std::move(progress)](DownloadProgress reached) {
        path.send([progress, reached] { progress(reached); });
    };
    using File = UpdateResult<std::shared_ptr<PackageFile>>;
    const PackageDownload::Finished answer = [this, path, release,
                                              handler = std::move(handler)](const File& file) {
        path.send([this, release, handler, file] {
            if (const auto* failure = std::get_if<UpdateFailure>(&file))
                handler(*failure);
            else
                handler(std::make_unique<DownloadedPackage>(
                    thread_, queue_, std::get<std::shared_ptr<PackageFile>>(file), release));
        });
    };
    return std::make_unique<ThreadedOperation<PackageDownload>>(
        thread_, path, [release, folder = folder_, patience = patience_.package, told, answer] {
            return std::make_unique<PackageDownload>(release, folder, patience, told, answer);
        });
}

} // namespace corvandi
