#include "system/updates/feed_download.h"

#include "shell/updates/update_feed.h"

namespace corvandi {
namespace {

using Kind = UpdateFailure::Kind;

} // namespace

FeedDownload::FeedDownload(QUrl feed, PublicKey key, const HttpPatience& patience, Finished finished)
    : feed_(std::move(feed))
    , key_(std::move(key))
    , download_(
          feed_, patience, [this](std::string_view bytes) { return store(bytes); },
          [this, finished = std::move(finished)](const std::optional<UpdateFailure>& failure) {
              finished(failure ? UpdateResult<Release>(*failure) : release());
          })
{
}

std::optional<UpdateFailure> FeedDownload::store(std::string_view bytes)
{
    if (static_cast<size_t>(text_.size()) + bytes.size() > maximumLength)
        return UpdateFailure{Kind::unreadable, QStringLiteral("the feed is too long")};
    text_.append(bytes.data(), static_cast<qsizetype>(bytes.size()));
    return std::nullopt;
}

UpdateResult<Release> FeedDownload::release() const
{
    const std::optional<SignedManifest> split = splitFeed(text_);
    if (!split)
        return UpdateFailure{Kind::unreadable, QStringLiteral("the feed has no signature")};
    if (!key_.hasSigned(split->signedText(), split->signature))
        return UpdateFailure{Kind::untrusted, QStringLiteral("not signed with the key of this program")};
    return readManifest(split->manifest, feed_);
}

} // namespace corvandi
