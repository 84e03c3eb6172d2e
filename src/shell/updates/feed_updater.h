#pragma once

#include "base/main_queue.h"
#include "ports/notice_presenter.h"
#include "ports/system_log.h"
#include "ports/update_source.h"
#include "ports/updater.h"
#include "ports/user_defaults.h"
#include "ports/wall_clock.h"
#include "shell/updates/release.h"

#include <QString>
#include <QUrl>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

namespace corvandi {

/// What the updater rests on; all of it outlives it.
struct UpdaterPlatform {
    MainQueue& queue;
    WallClock& clock;
    UserDefaults& defaults;
    SystemLog& log;
    UpdateSource& source;
    NoticePresenter& presenter;
    /// Shows a page in the person's web browser; false when there is none. Does not wait for it.
    std::function<bool(const QUrl&)> openPage;
};

/// The updater: decides when to look, what is offered and what is asked.
///
/// A check fetches the feed. A release that is newer than the running program, and that this system can
/// run, is announced; on the person's yes its page is opened in the web browser. Nothing is downloaded or
/// installed here: that is the package manager's business.
///
/// A check that a person asked for shows everything, also that there is nothing and what went wrong. A
/// check on schedule shows nothing but a release, without taking the keyboard focus, and logs failures.
/// Such checks are made only if the preference `automaticUpdateChecks` says so (it is off by default),
/// and at most one a day; the time of the last check of either kind is kept under `lastUpdateCheck`, in
/// seconds since 1970. Without that preference no timer exists.
///
/// Without a configured source nothing is ever checked, and the network is not touched.
///
/// Thread: main thread only.
class FeedUpdater : public Updater {
public:
    static constexpr QLatin1String automaticChecksKey{"automaticUpdateChecks"};
    static constexpr QLatin1String lastCheckKey{"lastUpdateCheck"};

    FeedUpdater(const UpdaterPlatform& platform, RunningProgram program);
    /// Cancels what is under way and takes its window away.
    ~FeedUpdater() override;
    FeedUpdater(const FeedUpdater&) = delete;
    FeedUpdater& operator=(const FeedUpdater&) = delete;

    void start() override;
    [[nodiscard]] bool canCheckForUpdates() const override;
    [[nodiscard]] std::unique_ptr<Registration>
    observeCanCheckForUpdates(std::function<void(bool)> observer) override;
    void checkForUpdates() override;

private:
    enum class Phase : uint8_t { stopped, idle, checking, asking };
    /// Who wants to know how it goes: nobody before there is something to show, or a person.
    enum class Audience : uint8_t { nobody, person };
    class Observer;
    using Observers = std::map<uint64_t, std::function<void(bool)>>;

    void enter(Phase phase);
    void begin(Audience audience);
    void showChecking();
    void feedArrived(const UpdateResult<QByteArray>& result);
    void decideOn(const Release& release);
    void openPage(const Release& release);

    void finish();
    void finishWith(const Notice& notice);
    void fail(const UpdateFailure& failure);

    [[nodiscard]] bool needsNewerSystem(const Release& release) const;
    [[nodiscard]] int64_t unixTime() const;
    [[nodiscard]] std::chrono::seconds timeUntilDue() const;
    void scheduleNext();

    UpdaterPlatform platform_;
    RunningProgram program_;
    Phase phase_ = Phase::stopped;
    Audience audience_ = Audience::nobody;
    /// Destroying it cancels it.
    std::unique_ptr<Registration> request_;
    std::unique_ptr<Timer> nextCheck_;
    std::shared_ptr<Observers> observers_;
    uint64_t nextObserver_ = 0;
};

} // namespace corvandi
