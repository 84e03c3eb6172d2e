#include "system/updates/web_update_source.h"

#include "system/net/http_fetch.h"
#include "system/updates/signed_feed.h"

namespace corvandi {
namespace {

using Kind = UpdateFailure::Kind;
using Manifest = UpdateResult<QByteArray>;

constexpr int mostRedirections = 5;

Manifest manifestIn(const QByteArray& feed, const PublicKey& key)
{
    const std::optional<SignedFeed> split = SignedFeed::split(feed);
    if (!split)
        return UpdateFailure{Kind::unreadable, QStringLiteral("the feed has no signature")};
    if (!key.hasSigned(split->signedText(), split->signature))
        return UpdateFailure{Kind::untrusted, QStringLiteral("not signed with the key of this program")};
    return split->manifest;
}

Kind kindOf(const HttpEnd& end)
{
    switch (end.kind) {
    case HttpEnd::Kind::brokenOff:
        // Once there was a status the answer had begun.
        return end.status == 0 ? Kind::unreachable : Kind::incomplete;
    case HttpEnd::Kind::unreachable:
        return Kind::unreachable;
    case HttpEnd::Kind::insecure:
        return Kind::insecure;
    case HttpEnd::Kind::timedOut:
        return Kind::timedOut;
    case HttpEnd::Kind::answered:
    case HttpEnd::Kind::status:
    case HttpEnd::Kind::notUnderstood:
        break;
    }
    return Kind::refused;
}

Manifest fetchManifest(const UpdateConfiguration& configuration, const UpdatePatience& patience,
                       const std::stop_token& stop)
{
    BoundedAnswer feed(WebUpdateSource::longestFeed);
    const HttpEnd end = fetch(
                            {.url = configuration.feed,
                             .redirections = mostRedirections,
                             .idleLimit = patience.idle,
                             .totalLimit = patience.total},
                            [&feed](const QByteArray& bytes) { return feed.take(bytes); }, stop)
                            .value_or(HttpEnd{});
    if (end.kind != HttpEnd::Kind::answered)
        return UpdateFailure{kindOf(end), end.detail};
    if (feed.isTooLong())
        return UpdateFailure{Kind::unreadable, QStringLiteral("the feed is too long")};
    return manifestIn(feed.bytes(), configuration.key);
}

} // namespace

WebUpdateSource::WebUpdateSource(std::optional<UpdateConfiguration> configuration, MainQueue& queue,
                                 const UpdatePatience& patience)
    : configuration_(std::move(configuration))
    , queue_(queue)
    , patience_(patience)
{
}

std::unique_ptr<Registration> WebUpdateSource::fetch(Handler handler)
{
    return std::make_unique<Errand<Manifest>>(
        worker_, queue_,
        [configuration = configuration_.value(), patience = patience_](const std::stop_token& stop) {
            return fetchManifest(configuration, patience, stop);
        },
        std::move(handler));
}

} // namespace corvandi
