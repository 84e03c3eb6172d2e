#include "shell/updates/feed_updater.h"

#include "shell/updates/update_texts.h"

#include <algorithm>
#include <utility>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::seconds checkInterval = 24h;
/// Start-up has better things to do.
constexpr std::chrono::seconds shortestWait = 1min;
/// Timers stand still while the machine is suspended, the wall clock does not.
constexpr std::chrono::seconds longestWait = 1h;

QString kindName(UpdateFailure::Kind kind)
{
    switch (kind) {
    case UpdateFailure::Kind::unreachable:
        return QStringLiteral("the server is out of reach");
    case UpdateFailure::Kind::timedOut:
        return QStringLiteral("it took too long");
    case UpdateFailure::Kind::insecure:
        return QStringLiteral("the connection is not secure");
    case UpdateFailure::Kind::refused:
        return QStringLiteral("the server refused");
    case UpdateFailure::Kind::unreadable:
        return QStringLiteral("the feed can't be read");
    case UpdateFailure::Kind::untrusted:
        return QStringLiteral("the feed's signature is wrong");
    case UpdateFailure::Kind::incomplete:
        return QStringLiteral("the feed is incomplete");
    case UpdateFailure::Kind::notOpened:
        return QStringLiteral("the page can't be opened");
    }
    return {};
}

} // namespace

class FeedUpdater::Observer : public Registration {
public:
    Observer(std::weak_ptr<Observers> observers, uint64_t number)
        : observers_(std::move(observers))
        , number_(number)
    {
    }
    ~Observer() override
    {
        if (const auto observers = observers_.lock())
            observers->erase(number_);
    }

private:
    std::weak_ptr<Observers> observers_;
    uint64_t number_;
};

FeedUpdater::FeedUpdater(const UpdaterPlatform& platform, RunningProgram program)
    : platform_(platform)
    , program_(std::move(program))
    , observers_(std::make_shared<Observers>())
{
    platform_.defaults.registerDefaults({{automaticChecksKey, false}});
}

FeedUpdater::~FeedUpdater()
{
    if (phase_ != Phase::stopped)
        platform_.presenter.dismiss();
}

void FeedUpdater::start()
{
    if (!platform_.source.isConfigured())
        return;
    enter(Phase::idle);
    scheduleNext();
}

bool FeedUpdater::canCheckForUpdates() const
{
    return phase_ == Phase::idle;
}

std::unique_ptr<Registration> FeedUpdater::observeCanCheckForUpdates(std::function<void(bool)> observer)
{
    observer(canCheckForUpdates());
    observers_->emplace(nextObserver_, std::move(observer));
    return std::make_unique<Observer>(observers_, nextObserver_++);
}

void FeedUpdater::enter(Phase phase)
{
    const bool couldCheck = canCheckForUpdates();
    phase_ = phase;
    if (couldCheck == canCheckForUpdates())
        return;
    // A copy: an observer may go, or bring another one, while it is told.
    for (const Observers told = *observers_; const auto& [number, observer] : told) {
        if (observers_->contains(number))
            observer(canCheckForUpdates());
    }
}

void FeedUpdater::checkForUpdates()
{
    switch (phase_) {
    case Phase::stopped:
        return;
    case Phase::idle:
        begin(Audience::person);
        return;
    case Phase::checking:
        if (std::exchange(audience_, Audience::person) == Audience::nobody) {
            showChecking();
            return;
        }
        [[fallthrough]];
    case Phase::asking:
        platform_.presenter.bringToFront();
    }
}

void FeedUpdater::begin(Audience audience)
{
    audience_ = audience;
    platform_.defaults.set(lastCheckKey, unixTime());
    enter(Phase::checking);
    if (audience_ == Audience::person)
        showChecking();
    request_ =
        platform_.source.fetch([this](const UpdateResult<QByteArray>& result) { feedArrived(result); });
}

void FeedUpdater::showChecking()
{
    platform_.presenter.showBusy(update_texts::checking(), [this] { finish(); });
}

void FeedUpdater::feedArrived(const UpdateResult<QByteArray>& result)
{
    request_.reset();
    const auto* manifest = std::get_if<QByteArray>(&result);
    const UpdateResult<Release> release =
        manifest ? readManifest(*manifest) : std::get<UpdateFailure>(result);
    if (const auto* failure = std::get_if<UpdateFailure>(&release))
        fail(*failure);
    else
        decideOn(std::get<Release>(release));
}

void FeedUpdater::decideOn(const Release& release)
{
    if (release.version <= program_.version) {
        finishWith(update_texts::upToDate(program_));
        return;
    }
    if (needsNewerSystem(release)) {
        finishWith(update_texts::needsNewerSystem(release, program_));
        return;
    }
    enter(Phase::asking);
    const Attention attention = audience_ == Audience::person ? Attention::take : Attention::waitForIt;
    platform_.presenter.ask(update_texts::available(release, program_, attention),
                            [this, release](Answer answer) {
                                if (answer == Answer::accept)
                                    openPage(release);
                                else
                                    finish();
                            });
}

void FeedUpdater::openPage(const Release& release)
{
    audience_ = Audience::person;
    const QString address = release.page.toString();
    if (!platform_.openPage(release.page)) {
        fail({UpdateFailure::Kind::notOpened, address});
        return;
    }
    platform_.log.write(
        QStringLiteral("the page of update %1 was opened: %2").arg(release.version.text(), address));
    finish();
}

void FeedUpdater::fail(const UpdateFailure& failure)
{
    platform_.log.write(QStringLiteral("no update: %1 (%2)").arg(kindName(failure.kind), failure.detail));
    finishWith(update_texts::failed(failure));
}

void FeedUpdater::finishWith(const Notice& notice)
{
    const bool isWatched = audience_ == Audience::person;
    finish();
    if (isWatched)
        platform_.presenter.tell(notice);
}

void FeedUpdater::finish()
{
    request_.reset();
    platform_.presenter.dismiss();
    enter(Phase::idle);
}

bool FeedUpdater::needsNewerSystem(const Release& release) const
{
    const auto minimum = release.minimumSystem.find(program_.system);
    const std::optional<Version> present = Version::parse(program_.systemVersion);
    // A system that has no number yet (a testing branch) is as new as can be.
    return minimum != release.minimumSystem.end() && present && *present < minimum->second;
}

int64_t FeedUpdater::unixTime() const
{
    return static_cast<int64_t>(platform_.clock.now().secondsSinceUnixEpoch());
}

std::chrono::seconds FeedUpdater::timeUntilDue() const
{
    const int64_t now = unixTime();
    const int64_t last = platform_.defaults.integer(lastCheckKey);
    // A last check in the future was made with a clock that went wrong.
    if (last > now || last <= now - checkInterval.count())
        return 0s;
    return checkInterval - std::chrono::seconds(now - last);
}

void FeedUpdater::scheduleNext()
{
    if (!platform_.defaults.boolean(automaticChecksKey)) {
        nextCheck_.reset();
        return;
    }
    const std::chrono::seconds wait = std::clamp(timeUntilDue(), shortestWait, longestWait);
    nextCheck_ = platform_.queue.after(wait, [this] {
        if (canCheckForUpdates() && platform_.defaults.boolean(automaticChecksKey) && timeUntilDue() == 0s)
            begin(Audience::nobody);
        scheduleNext();
    });
}

} // namespace corvandi
