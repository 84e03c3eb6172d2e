#include "system/accessibility/focus_tracker.h"

#include "system/accessibility/accessible_object.h"

#include <QDBusPendingCallWatcher>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <utility>

namespace corvandi {
namespace {

using std::chrono::milliseconds;

/// Waits before each further try to find a focus that was announced: most applications know it within
/// the first, one that is still building its window within the last.
constexpr std::array retryDelays{milliseconds(50), milliseconds(150), milliseconds(400), milliseconds(1200)};

/// A registry that dies as soon as it is started is not started over and over.
constexpr std::chrono::seconds registryRestartInterval{5};

/// A call that waits for its reply for as long as the application lives.
constexpr int withoutTimeLimit = std::numeric_limits<int>::max();

/// Calls `then` with the finished call, unless `owner` is destroyed before.
void whenFinished(const QDBusPendingCall& call, QObject& owner,
                  std::function<void(const QDBusPendingCall&)> then)
{
    auto watcher = std::make_unique<QDBusPendingCallWatcher>(call, &owner);
    QObject::connect(watcher.get(), &QDBusPendingCallWatcher::finished, &owner,
                     [then = std::move(then)](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         then(*finished);
                     });
    // From here on it is its owner's child.
    (void)watcher.release();
}

} // namespace

FocusTracker::FocusTracker(const QDBusConnection& bus, FocusCache& cache,
                           std::function<void(const QString&)> complain)
    : bus_(bus)
    , cache_(cache)
    , complain_(std::move(complain))
    , reader_(bus_, [this](const QString& silent) { awaitAnswer(silent); })
{
    applicationWatcher_.setConnection(bus_);
    applicationWatcher_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    registryWatcher_.setConnection(bus_);
    registryWatcher_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    registryWatcher_.addWatchedService(registryRoot().bus);
    connect(&applicationWatcher_, &QDBusServiceWatcher::serviceUnregistered, this,
            &FocusTracker::forgetApplication);
    connect(&registryWatcher_, &QDBusServiceWatcher::serviceRegistered, this, &FocusTracker::beginTracking);
    connect(&registryWatcher_, &QDBusServiceWatcher::serviceUnregistered, this,
            &FocusTracker::restartRegistry);
    secondRegistration_.setSingleShot(true);
    secondRegistration_.setInterval(secondRegistrationDelay);
    connect(&secondRegistration_, &QTimer::timeout, this, &FocusTracker::registerEvents);
    connect(&secondRegistration_, &QTimer::timeout, this, &FocusTracker::inspectActiveWindows);
    listen();
    beginTracking();
}

/// Applications read the list of registered events before they listen for additions to it. One that
/// starts at the same moment misses a registration in between, and would stay mute without a second one.
void FocusTracker::beginTracking()
{
    registerEvents();
    inspectActiveWindows();
    secondRegistration_.start();
}

void FocusTracker::listen()
{
    const QString any;
    const QString objectEvents = QStringLiteral("org.a11y.atspi.Event.Object");
    const QString stateChanged = QStringLiteral("StateChanged");
    bus_.connect(any, any, objectEvents, stateChanged, {QStringLiteral("focused")}, any, this,
                 SLOT(onFocused(QDBusMessage)));
    bus_.connect(any, any, objectEvents, stateChanged, {QStringLiteral("defunct")}, any, this,
                 SLOT(onDefunct(QDBusMessage)));
    bus_.connect(any, any, QStringLiteral("org.a11y.atspi.Event.Window"), QStringLiteral("Activate"), this,
                 SLOT(onWindowActivated(QDBusMessage)));
}

/// Applications announce only what somebody has registered for. Doing so twice does no harm.
void FocusTracker::registerEvents()
{
    for (const char* event :
         {"object:state-changed:focused", "object:state-changed:defunct", "window:activate"}) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            registryRoot().bus, QStringLiteral("/org/a11y/atspi/registry"),
            QStringLiteral("org.a11y.atspi.Registry"), QStringLiteral("RegisterEvent"));
        call << QString(QLatin1String(event));
        whenFinished(bus_.asyncCall(call), *this, [this](const QDBusPendingCall& reply) {
            if (reply.isError())
                complain_(QStringLiteral("its registry does not answer"));
        });
    }
}

/// An application that starts together with a new registry may miss what is registered there, so there
/// had better be one before any application asks for it. Registering starts it.
void FocusTracker::restartRegistry()
{
    if (!nextRegistryRestart_.hasExpired())
        return;
    nextRegistryRestart_ = QDeadlineTimer(registryRestartInterval);
    registerEvents();
}

void FocusTracker::onFocused(const QDBusMessage& event)
{
    if (event.arguments().value(1).toInt() == 0)
        return;
    applicationWatcher_.addWatchedService(event.service());
    ++announcements_[event.service()];
    // When several have arrived, only the last one of each application is worth a question.
    if (announced_.isEmpty())
        QMetaObject::invokeMethod(this, &FocusTracker::inspectAnnounced, Qt::QueuedConnection);
    announced_.insert(event.service(), event.path());
}

void FocusTracker::onDefunct(const QDBusMessage& event)
{
    const ObjectRef object{event.service(), event.path()};
    if (event.arguments().value(1).toInt() == 0 || cache_.objectOf(object.bus) != object)
        return;
    cache_.forget(object.bus);
    inspectAgainLater({.object = {object.bus, QString()},
                       .cause = Cause::elementGone,
                       .announcements = announcements_.value(object.bus)});
}

void FocusTracker::onWindowActivated(const QDBusMessage& event)
{
    applicationWatcher_.addWatchedService(event.service());
    inspectKnown(event.service(), Cause::mayHaveChanged);
}

void FocusTracker::inspectAnnounced()
{
    const QHash<QString, QString> announced = std::exchange(announced_, {});
    for (auto entry = announced.begin(); entry != announced.end(); ++entry) {
        inspect({.object = {entry.key(), entry.value()},
                 .cause = Cause::focusAnnounced,
                 .announcements = announcements_.value(entry.key())});
    }
}

void FocusTracker::inspectKnown(const QString& bus, Cause cause)
{
    inspect({.object = cache_.objectOf(bus).value_or(ObjectRef{bus, QString()}),
             .cause = cause,
             .announcements = announcements_.value(bus)});
}

void FocusTracker::inspectProcess(pid_t process)
{
    for (const QString& bus : busNamesOf(process))
        inspectKnown(bus, Cause::readerAsks);
}

void FocusTracker::inspectActiveWindows()
{
    const QDeadlineTimer deadline(inspectionLimit);
    if (const auto object = findFocused(reader_, applications(deadline), SearchedWindows::active, deadline))
        (void)take(*object, deadline);
}

void FocusTracker::inspect(const Inspection& inspection)
{
    const QDeadlineTimer deadline(inspectionLimit);
    const ObjectRef& object = inspection.object;
    const Finding direct = object.path.isEmpty() ? Finding::notFocused : take(object, deadline);
    if (direct == Finding::focused || isFocused(takeFocusedOf(object.bus, deadline)) || isFocused(direct))
        return;
    const auto known = cache_.objectOf(object.bus);
    const bool isKnown = known == object;
    if (isKnown ? direct == Finding::gone : inspection.cause == Cause::focusAnnounced)
        cache_.forget(object.bus);
    inspectAgainLater(inspection);
}

bool FocusTracker::isFocused(Finding finding)
{
    return finding == Finding::focused || finding == Finding::focusedDocument;
}

void FocusTracker::inspectAgainLater(Inspection inspection)
{
    const QString& bus = inspection.object.bus;
    const bool contentWithKnown =
        inspection.cause == Cause::mayHaveChanged && cache_.objectOf(bus).has_value();
    // One that has fallen silent is inspected when it answers.
    if (inspection.cause == Cause::readerAsks || contentWithKnown || reader_.isSilent(bus) ||
        inspection.retries >= retryDelays.size())
        return;
    const milliseconds delay = retryDelays[inspection.retries++];
    QTimer::singleShot(delay, this, [this, inspection = std::move(inspection)] {
        if (announcements_.value(inspection.object.bus) == inspection.announcements)
            inspect(inspection);
    });
}

FocusTracker::Finding FocusTracker::take(const ObjectRef& object, const QDeadlineTimer& deadline)
{
    const ObjectReport report = reportOn(reader_, object, deadline);
    if (report.outcome == ObjectReport::Outcome::gone)
        return Finding::gone;
    if (report.outcome == ObjectReport::Outcome::unanswered ||
        !report.traits.states.has(AccessibleState::focused))
        return Finding::notFocused;
    applicationWatcher_.addWatchedService(object.bus);
    cache_.store(object, report.process, focusedElementOf(report.traits));
    return isDocumentToRead(report.traits.role, report.traits.states) ? Finding::focusedDocument
                                                                      : Finding::focused;
}

FocusTracker::Finding FocusTracker::takeFocusedOf(const QString& bus, const QDeadlineTimer& deadline)
{
    const auto object = findFocused(reader_, {applicationRoot(bus)}, SearchedWindows::all, deadline);
    return object ? take(*object, deadline) : Finding::notFocused;
}

QList<ObjectRef> FocusTracker::applications(const QDeadlineTimer& deadline)
{
    const std::array calls{askChildren(registryRoot())};
    return childrenIn(reader_.ask(calls, deadline).front());
}

QStringList FocusTracker::busNamesOf(pid_t process)
{
    QStringList names = cache_.busNamesOf(process);
    if (!names.isEmpty())
        return names;
    const QDeadlineTimer deadline(inspectionLimit);
    const QList<ObjectRef> found = applications(deadline);
    std::vector<QDBusMessage> calls;
    for (const ObjectRef& application : found)
        calls.push_back(askProcess(application.bus));
    const std::vector<QDBusMessage> replies = reader_.ask(calls, deadline);
    for (qsizetype i = 0; i < found.size(); ++i) {
        if (numberIn(replies[static_cast<size_t>(i)]) == static_cast<uint32_t>(process))
            names.append(found[i].bus);
    }
    return names;
}

/// Called for an application that has fallen silent: looks at it again as soon as it answers.
void FocusTracker::awaitAnswer(const QString& bus)
{
    if (awaited_.contains(bus))
        return;
    awaited_.insert(bus);
    const QDBusPendingCall call = bus_.asyncCall(askRole(applicationRoot(bus)), withoutTimeLimit);
    whenFinished(call, *this, [this, bus](const QDBusPendingCall& answer) {
        awaited_.remove(bus);
        reader_.endSilence(bus);
        if (!answer.isError())
            inspectKnown(bus, Cause::mayHaveChanged);
    });
}

void FocusTracker::forgetApplication(const QString& bus)
{
    cache_.forget(bus);
    applicationWatcher_.removeWatchedService(bus);
    announced_.remove(bus);
    announcements_.remove(bus);
    reader_.endSilence(bus);
}

} // namespace corvandi
