#pragma once

#include "signer.h"
#include "support/event_loop.h"
#include "support/http_server.h"
#include "support/recording_log.h"
#include "system/process/qt_main_queue.h"
#include "system/updates/web_update_source.h"

#include <gtest/gtest.h>

namespace corvandi::testing {

/// A source of updates whose server and makers are the test's.
class UpdateTest : public ::testing::Test {
protected:
    /// The source; its feed is at "/feed" of the server unless another address was set.
    WebUpdateSource& source()
    {
        if (!source_)
            source_.emplace(UpdateConfiguration::parse(feedUrl().toString(), key, log), queue, patience);
        return *source_;
    }
    [[nodiscard]] QUrl feedUrl() const { return feed.isEmpty() ? server.url(QStringLiteral("/feed")) : feed; }

    /// A good feed at "/feed".
    void serveRelease() { server.serve(QStringLiteral("/feed"), signer.feed(manifest)); }

    UpdateResult<QByteArray> fetchFeed()
    {
        std::optional<UpdateResult<QByteArray>> result;
        const auto request = source().fetch([&](const auto& found) { result = found; });
        if (!waitUntil([&] { return result.has_value(); }, std::chrono::seconds(20)))
            return UpdateFailure{UpdateFailure::Kind::notOpened, QStringLiteral("the test got no answer")};
        return *result;
    }
    /// Whether fetching the feed gives what was signed.
    bool feedIsGood()
    {
        const UpdateResult<QByteArray> result = fetchFeed();
        const auto* failure = std::get_if<UpdateFailure>(&result);
        EXPECT_FALSE(failure) << failure->detail.toStdString();
        return !failure && std::get<QByteArray>(result) == manifest;
    }
    /// How fetching the feed fails.
    UpdateFailure feedFailure()
    {
        const UpdateResult<QByteArray> result = fetchFeed();
        const auto* failure = std::get_if<UpdateFailure>(&result);
        if (!failure)
            ADD_FAILURE() << "it did not fail";
        return failure ? *failure : UpdateFailure{};
    }

    QtMainQueue queue;
    RecordingLog log;
    Signer signer;
    HttpServer server;
    QUrl feed;
    QByteArray key = signer.publicKey();
    QByteArray manifest = R"({"version": "1.2.0", "page": "https://updates.example/1.2.0", "notes": "New."})";
    UpdatePatience patience{std::chrono::seconds(5), std::chrono::seconds(20)};

private:
    std::optional<WebUpdateSource> source_;
};

} // namespace corvandi::testing
