#pragma once

#include "shell/updates/release.h"
#include "system/updates/http_download.h"
#include "system/updates/public_key.h"

#include <QByteArray>

namespace corvandi {

/// The download of the feed, and the check of its signature. Destroying it ends the download.
///
/// Thread: the one that created it, which needs an event loop.
class FeedDownload {
public:
    using Finished = std::function<void(UpdateResult<Release>)>;

    /// The longest feed that is read, in bytes.
    static constexpr size_t maximumLength = 1'000'000;

    FeedDownload(QUrl feed, PublicKey key, const HttpPatience& patience, Finished finished);

private:
    [[nodiscard]] std::optional<UpdateFailure> store(std::string_view bytes);
    [[nodiscard]] UpdateResult<Release> release() const;

    QUrl feed_;
    PublicKey key_;
    QByteArray text_;
    HttpDownload download_;
};

} // namespace corvandi
