#pragma once

#include "base/main_queue.h"
#include "ports/system_log.h"
#include "ports/updater.h"
#include "ports/user_defaults.h"
#include "ports/wall_clock.h"
#include "shell/updates/update_presenter.h"
#include "shell/updates/update_source.h"

#include <QString>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>

namespace corvandi {

/// What the updater rests on; all of it outlives it.
struct UpdaterPlatform {
    MainQueue& queue;
    WallClock& clock;
    UserDefaults& defaults;
    SystemLog& log;
    UpdateSource& source;
    UpdatePresenter& presenter;
};

/// The updater: decides when to look, what is offered and what is asked.
///
/// A check fetches the feed. A release that is newer than the running program, and that this system can
/// run, is announced; the person says whether it is downloaded. Only a download that was found to be
/// the signed one is offered for installation, and only the person's yes opens the system's installer.
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
    enum class Phase : uint8_t { stopped, idle, checking, asking, downloading, opening };
    /// Who wants to know how it goes: nobody before there is something to show, or a person.
    enum class Audience : uint8_t { nobody, person };
    class Observer;
    using Observers = std::map<uint64_t, std::function<void(bool)>>;

    void enter(Phase phase);
    void begin(Audience audience);
    void showChecking();
    void feedArrived(const UpdateResult<Release>& result);
    void decideOn(const Release& release);
    void download();
    void packageArrived(UpdateResult<std::unique_ptr<UpdatePackage>> result);
    void openPackage();
    void packageOpened(const std::optional<UpdateFailure>& failure);

    void finish();
    void finishWith(const UpdateMessage& message);
    void fail(const UpdateFailure& failure);

    [[nodiscard]] bool needsNewerSystem(const Release& release) const;
    [[nodiscard]] int64_t unixTime() const;
    [[nodiscard]] std::chrono::seconds timeUntilDue() const;
    void scheduleNext();

    UpdaterPlatform platform_;
    RunningProgram program_;
    Phase phase_ = Phase::stopped;
    Audience audience_ = Audience::nobody;
    std::optional<Release> release_;
    std::unique_ptr<UpdatePackage> package_;
    /// What is under way; destroying it cancels that. Goes before the package.
    std::unique_ptr<Registration> operation_;
    std::unique_ptr<Timer> nextCheck_;
    std::shared_ptr<Observers> observers_;
    uint64_t nextObserver_ = 0;
};

} // namespace corvandi
