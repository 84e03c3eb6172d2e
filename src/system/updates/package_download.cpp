#include "system/updates/package_download.h"

#include <chrono>

namespace corvandi {
namespace {

using Kind = UpdateFailure::Kind;
using namespace std::chrono_literals;

constexpr std::chrono::milliseconds progressInterval = 100ms;

} // namespace

PackageDownload::PackageDownload(Release release, const QString& folder, const HttpPatience& patience,
                                 UpdateSource::ProgressHandler progress, Finished finished)
    : release_(std::move(release))
    , progress_(std::move(progress))
    , finished_(std::move(finished))
{
    UpdateResult<std::unique_ptr<PackageFile>> created = PackageFile::create(folder, release_);
    if (const auto* failure = std::get_if<UpdateFailure>(&created)) {
        finished_(*failure);
        return;
    }
    file_ = std::get<std::unique_ptr<PackageFile>>(std::move(created));
    download_ = std::make_unique<HttpDownload>(
        release_.package, patience, [this](std::string_view bytes) { return store(bytes); },
        [this](const std::optional<UpdateFailure>& failure) { downloaded(failure); });
}

std::optional<UpdateFailure> PackageDownload::store(std::string_view bytes)
{
    received_ += static_cast<int64_t>(bytes.size());
    if (received_ > release_.length)
        return UpdateFailure{Kind::tampered, QStringLiteral("longer than %1 bytes").arg(release_.length)};
    if (auto failure = file_->append(bytes))
        return failure;
    digest_.add(bytes);
    tellProgress();
    return std::nullopt;
}

void PackageDownload::tellProgress()
{
    const bool isDue = !sinceProgress_.isValid() || sinceProgress_.hasExpired(progressInterval.count());
    if (!isDue && received_ < release_.length)
        return;
    sinceProgress_.start();
    progress_({received_, release_.length});
}

void PackageDownload::downloaded(const std::optional<UpdateFailure>& failure)
{
    std::optional<UpdateFailure> wrong = failure ? failure : complete();
    if (wrong) {
        // Gone by the time that anybody hears of it.
        file_.reset();
        finished_(*wrong);
    } else {
        finished_(std::shared_ptr<PackageFile>(std::move(file_)));
    }
}

std::optional<UpdateFailure> PackageDownload::complete()
{
    if (auto failure = file_->finish())
        return failure;
    if (received_ < release_.length)
        return UpdateFailure{Kind::incomplete,
                             QStringLiteral("%1 of %2 bytes").arg(received_).arg(release_.length)};
    if (digest_.digest() != release_.sha512)
        return UpdateFailure{Kind::tampered, QStringLiteral("another digest than the signed one")};
    return std::nullopt;
}

} // namespace corvandi
