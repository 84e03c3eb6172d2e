#pragma once

#include "shell/updates/release.h"
#include "shell/updates/update_source.h"
#include "system/updates/http_download.h"
#include "system/updates/package_file.h"
#include "system/updates/sha512.h"

#include <QElapsedTimer>

#include <memory>

namespace corvandi {

/// The download of one package into a file, which is compared with what was signed while it comes.
/// Destroying it ends the download and removes the file.
///
/// Thread: the one that created it, which needs an event loop; it waits for the disk there.
class PackageDownload {
public:
    using Finished = std::function<void(UpdateResult<std::shared_ptr<PackageFile>>)>;

    PackageDownload(Release release, const QString& folder, const HttpPatience& patience,
                    UpdateSource::ProgressHandler progress, Finished finished);

private:
    [[nodiscard]] std::optional<UpdateFailure> store(std::string_view bytes);
    void downloaded(const std::optional<UpdateFailure>& failure);
    [[nodiscard]] std::optional<UpdateFailure> complete();
    void tellProgress();

    Release release_;
    UpdateSource::ProgressHandler progress_;
    Finished finished_;
    std::unique_ptr<PackageFile> file_;
    Sha512 digest_;
    int64_t received_ = 0;
    QElapsedTimer sinceProgress_;
    std::unique_ptr<HttpDownload> download_;
};

} // namespace corvandi
