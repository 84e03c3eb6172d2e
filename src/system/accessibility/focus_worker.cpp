#include "system/accessibility/focus_worker.h"

#include <QTimer>

namespace corvandi {
namespace {

/// A bus that has just died needs a moment until its starter notices and can start another one.
constexpr std::chrono::milliseconds settlingTime{500};

/// One that lives answers within milliseconds, on a busy machine within some hundred.
constexpr std::chrono::seconds greetingTime{2};

} // namespace

FocusWorker::FocusWorker(FocusCache& cache, SystemLog& log)
    : cache_(cache)
    , log_(log)
    , connectionName_(QStringLiteral("focus-%1").arg(reinterpret_cast<quintptr>(this)))
{
}

FocusWorker::~FocusWorker()
{
    disconnectFromBus();
}

void FocusWorker::start()
{
    finder_ = std::make_unique<AccessibilityBusFinder>();
    connect(finder_.get(), &AccessibilityBusFinder::found, this, &FocusWorker::greet);
    connect(finder_.get(), &AccessibilityBusFinder::failed, this, &FocusWorker::complain);
    search();
}

void FocusWorker::search()
{
    nextSearch_ = QDeadlineTimer(searchInterval);
    finder_->search();
}

void FocusWorker::request(pid_t process)
{
    if (requested_.exchange(process) == 0)
        QMetaObject::invokeMethod(this, &FocusWorker::serveRequest, Qt::QueuedConnection);
}

void FocusWorker::serveRequest()
{
    inspect(requested_.exchange(0));
}

void FocusWorker::refresh(pid_t process, std::function<void()> done)
{
    const auto serve = [this, process, done = std::move(done)] {
        inspect(process);
        done();
    };
    QMetaObject::invokeMethod(this, serve, Qt::QueuedConnection);
}

void FocusWorker::inspect(pid_t process)
{
    if (tracker_)
        tracker_->inspectProcess(process);
    else if (nextSearch_.hasExpired())
        search();
}

void FocusWorker::greet(const QString& address)
{
    if (tracker_ && address == address_)
        return;
    disconnectFromBus();
    greeting_ = std::make_unique<BusGreeting>(address);
    connect(greeting_.get(), &BusGreeting::answered, this, &FocusWorker::connectTo);
    connect(greeting_.get(), &BusGreeting::failed, this, &FocusWorker::complain);
    QTimer::singleShot(greetingTime, greeting_.get(),
                       [this] { complain(QStringLiteral("it does not answer")); });
}

void FocusWorker::connectTo(const QString& address)
{
    greeting_.release()->deleteLater();
    QDBusConnection bus = QDBusConnection::connectToBus(address, connectionName_);
    if (!bus.isConnected()) {
        complain(bus.lastError().message());
        return;
    }
    bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                SLOT(busLost()));
    address_ = address;
    complained_ = false;
    tracker_ =
        std::make_unique<FocusTracker>(bus, cache_, [this](const QString& reason) { complain(reason); });
}

void FocusWorker::busLost()
{
    disconnectFromBus();
    complain(QStringLiteral("it has gone"));
    QTimer::singleShot(settlingTime, this, &FocusWorker::search);
}

void FocusWorker::disconnectFromBus()
{
    greeting_.reset();
    tracker_.reset();
    QDBusConnection::disconnectFromBus(connectionName_);
    cache_.clear();
}

void FocusWorker::complain(const QString& reason)
{
    if (complained_)
        return;
    complained_ = true;
    log_.write(QStringLiteral("the accessibility bus is out of reach (%1); the focused element is unknown")
                   .arg(reason));
}

} // namespace corvandi
