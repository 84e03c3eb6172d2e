#pragma once

#include "shell/updates/fake_notice_presenter.h"
#include "shell/updates/fake_update_source.h"
#include "shell/updates/feed_updater.h"
#include "support/fake_user_defaults.h"
#include "support/recording_log.h"
#include "support/virtual_queue.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace corvandi::testing {

/// A wall clock that goes with the virtual queue, and that can be set.
class FakeWallClock : public WallClock {
public:
    explicit FakeWallClock(const MainQueue& queue)
        : queue_(queue)
    {
    }
    [[nodiscard]] Date now() const override
    {
        const double elapsed = std::chrono::duration<double>(queue_.now()).count();
        return {start.secondsSinceReference + elapsed};
    }
    Date start{800'000'000};

private:
    const MainQueue& queue_;
};

inline Version version(const char* text)
{
    return Version::parse(QString::fromUtf8(text)).value();
}

/// The manifest of a release; `more` are members beside those that it must have.
inline QByteArray release(const char* version, const QByteArray& more = {})
{
    return QByteArray(R"({"version": ")") + version + R"(", "page": "https://updates.example/1.2")" +
           (more.isEmpty() ? more : ", " + more) + '}';
}

class UpdaterTest : public ::testing::Test {
protected:
    /// The updater of version 1.0 on Debian 12, started.
    FeedUpdater& updater()
    {
        if (!updater_) {
            updater_.emplace(platform, program);
            updater_->start();
        }
        return *updater_;
    }
    void endProgram() { updater_.reset(); }

    /// A check that a person asks for, up to the answer of the server.
    void checkAndFind(const QByteArray& found)
    {
        updater().checkForUpdates();
        source.answer(found);
    }

    VirtualQueue queue;
    FakeWallClock clock{queue};
    FakeUserDefaults defaults;
    RecordingLog log;
    FakeUpdateSource source;
    FakeNoticePresenter presenter;
    /// The pages that the browser was given, and whether there is one.
    std::vector<QUrl> opened;
    bool hasBrowser = true;
    const UpdaterPlatform platform{queue, clock, defaults, log, source, presenter, [this](const QUrl& page) {
                                       opened.push_back(page);
                                       return hasBrowser;
                                   }};
    RunningProgram program{version("1.0"), QStringLiteral("debian"), QStringLiteral("12")};

private:
    std::optional<FeedUpdater> updater_;
};

} // namespace corvandi::testing
