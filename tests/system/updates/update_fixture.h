#pragma once

#include "signer.h"
#include "support/event_loop.h"
#include "support/http_server.h"
#include "support/recording_log.h"
#include "system/process/qt_main_queue.h"
#include "system/updates/linux_update_source.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace corvandi::testing {

/// A source of updates whose server and makers are the test's.
class UpdateTest : public ::testing::Test {
protected:
    UpdateTest() { patience(std::chrono::seconds(5), std::chrono::seconds(20)); }

    void patience(std::chrono::milliseconds idle, std::chrono::milliseconds total)
    {
        patience_.feed = patience_.package = {idle, total};
    }
    /// The source; its feed is at "/feed" of the server unless another address was set.
    LinuxUpdateSource& source()
    {
        if (!source_)
            source_.emplace(UpdateConfiguration::parse(feedUrl().toString(), key, log), queue, folder(),
                            patience_);
        return *source_;
    }
    [[nodiscard]] QUrl feedUrl() const { return feed.isEmpty() ? server.url(QStringLiteral("/feed")) : feed; }
    [[nodiscard]] QString folder() const { return home.filePath(QStringLiteral("cache/updates")); }
    /// The names of the files in the folder of packages.
    [[nodiscard]] QStringList files() const
    {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                        QDir::NoDotAndDotDot);
    }

    [[nodiscard]] QByteArray manifestFor(const QByteArray& content, const QUrl& url) const
    {
        return R"({"version": "1.2.0", "package": ")" + url.toEncoded() + R"(", "length": )" +
               QByteArray::number(content.size()) + R"(, "sha512": ")" + sha512Hex(content) +
               R"(", "notes": "New."})";
    }
    /// A good feed at "/feed", and its package at "/corvandi.deb".
    void serveRelease()
    {
        server.serve(QStringLiteral("/feed"), signer.feed(manifestFor(package, packageUrl())));
        server.serve(QStringLiteral("/corvandi.deb"), package);
    }
    [[nodiscard]] QUrl packageUrl() const { return server.url(QStringLiteral("/corvandi.deb")); }
    [[nodiscard]] Release release() const
    {
        return {Version::parse(QStringLiteral("1.2.0")).value(), packageUrl(), package.size(),
                QByteArray::fromHex(sha512Hex(package)),         QString(),    {}};
    }

    UpdateResult<Release> fetchFeed()
    {
        std::optional<UpdateResult<Release>> result;
        const auto request = source().fetchFeed([&](const UpdateResult<Release>& found) { result = found; });
        if (!waitUntil([&] { return result.has_value(); }, std::chrono::seconds(20)))
            return UpdateFailure{UpdateFailure::Kind::notOpened, QStringLiteral("the test got no answer")};
        return *result;
    }
    UpdateResult<std::unique_ptr<UpdatePackage>> fetchPackage(const Release& wanted)
    {
        std::optional<UpdateResult<std::unique_ptr<UpdatePackage>>> result;
        const auto request = source().fetchPackage(
            wanted, [this](DownloadProgress progress) { progresses.push_back(progress); },
            [&](UpdateResult<std::unique_ptr<UpdatePackage>> found) { result = std::move(found); });
        if (!waitUntil([&] { return result.has_value(); }, std::chrono::seconds(20)))
            return UpdateFailure{UpdateFailure::Kind::notOpened, QStringLiteral("the test got no answer")};
        return std::move(*result);
    }
    /// How fetching the feed fails.
    UpdateFailure feedFailure() { return failureIn(fetchFeed()); }
    UpdateFailure packageFailure(const Release& wanted) { return failureIn(fetchPackage(wanted)); }

    template<class T>
    static UpdateFailure failureIn(const UpdateResult<T>& result)
    {
        const auto* failure = std::get_if<UpdateFailure>(&result);
        if (!failure)
            ADD_FAILURE() << "it did not fail";
        return failure ? *failure : UpdateFailure{};
    }

    QTemporaryDir home;
    QtMainQueue queue;
    RecordingLog log;
    Signer signer;
    HttpServer server;
    QUrl feed;
    QByteArray key = signer.publicKey();
    QByteArray package = QByteArray("!<arch>\ndebian-binary package\n").repeated(50'000);
    std::vector<DownloadProgress> progresses;

private:
    UpdatePatience patience_;
    std::optional<LinuxUpdateSource> source_;
};

} // namespace corvandi::testing
