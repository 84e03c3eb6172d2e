#pragma once

#include "shell/updates/fake_update_presenter.h"
#include "shell/updates/fake_update_source.h"
#include "shell/updates/feed_updater.h"
#include "support/fake_user_defaults.h"
#include "support/recording_log.h"
#include "support/virtual_queue.h"

#include <gtest/gtest.h>

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

inline Release release(const char* text)
{
    return {version(text), QUrl(QStringLiteral("https://updates.example/corvandi.deb")),
            12'300'000,    QByteArray(64, 'd'),
            QString(),     {}};
}

class UpdaterTest : public ::testing::Test {
protected:
    /// The updater of version 1.0 on Debian 12, started.
    FeedUpdater& updater()
    {
        if (!updater_) {
            updater_.emplace(UpdaterPlatform{queue, clock, defaults, log, source, presenter}, program);
            updater_->start();
        }
        return *updater_;
    }
    void endProgram() { updater_.reset(); }

    /// A check that a person asks for, up to the answer of the server.
    void checkAndFind(const Release& found)
    {
        updater().checkForUpdates();
        source.answerFeed(found);
    }
    /// Up to the question whether to install.
    void download()
    {
        checkAndFind(release("1.2"));
        presenter.answer(UpdateAnswer::accept);
        source.completePackage();
    }

    VirtualQueue queue;
    FakeWallClock clock{queue};
    FakeUserDefaults defaults;
    RecordingLog log;
    FakeUpdateSource source;
    FakeUpdatePresenter presenter;
    RunningProgram program{version("1.0"), QStringLiteral("debian"), QStringLiteral("12")};

private:
    std::optional<FeedUpdater> updater_;
};

} // namespace corvandi::testing
