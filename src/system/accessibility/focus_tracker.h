#pragma once

#include "system/accessibility/accessibility_bus.h"
#include "system/accessibility/focus_cache.h"
#include "system/accessibility/focus_search.h"

#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>

#include <functional>

namespace corvandi {

/// Keeps the cache true while one connection to the accessibility bus lives.
///
/// An element is taken over when its application announces that it has the focus and it confirms that
/// when asked; else the application is searched, several times, because some announce the focus before
/// they know it. The loss of the focus and the deactivation of a window are ignored: a menu, a grabbed
/// key or a pop-up causes them too, while the person still means the same field. An element is given up
/// when another one of its application has the focus, when it ceases to exist, or when its application
/// leaves the bus.
///
/// Thread: a worker thread, which it may keep busy for `inspectionLimit` at a time.
class FocusTracker : public QObject {
    Q_OBJECT

public:
    /// The longest that one application is inspected at a time.
    static constexpr std::chrono::milliseconds inspectionLimit{300};
    /// When the applications are told to announce the focus a second time, because one that was just
    /// starting may have missed the first.
    static constexpr std::chrono::seconds secondRegistrationDelay{2};

    /// `bus` is connected. `complain` is called with the reason when the applications cannot be told to
    /// announce the focus.
    FocusTracker(const QDBusConnection& bus, FocusCache& cache, std::function<void(const QString&)> complain);

    /// Brings what is known about that process up to date.
    void inspectProcess(pid_t process);

private Q_SLOTS:
    void onFocused(const QDBusMessage& event);
    void onDefunct(const QDBusMessage& event);
    void onWindowActivated(const QDBusMessage& event);

private:
    /// Why an application is inspected, which decides what it means when no focus is found.
    enum class Cause { focusAnnounced, elementGone, mayHaveChanged, readerAsks };

    struct Inspection {
        /// The object to ask first; its path is empty if only a search can tell.
        ObjectRef object;
        Cause cause = Cause::readerAsks;
        size_t retries = 0;
        /// The count of the application's announcements when the first try was made.
        uint64_t announcements = 0;
    };

    /// An application that does not answer has not got the focus, as far as can be told. A document that
    /// has it may not be the only one that says so.
    enum class Finding { focused, focusedDocument, notFocused, gone };

    void listen();
    void beginTracking();
    void registerEvents();
    void restartRegistry();
    void inspectActiveWindows();
    void inspectAnnounced();
    void inspectKnown(const QString& bus, Cause cause);
    void inspect(const Inspection& inspection);
    void inspectAgainLater(Inspection inspection);
    [[nodiscard]] static bool isFocused(Finding finding);
    [[nodiscard]] Finding take(const ObjectRef& object, const QDeadlineTimer& deadline);
    [[nodiscard]] Finding takeFocusedOf(const QString& bus, const QDeadlineTimer& deadline);
    [[nodiscard]] QList<ObjectRef> applications(const QDeadlineTimer& deadline);
    [[nodiscard]] QStringList busNamesOf(pid_t process);
    void awaitAnswer(const QString& bus);
    void forgetApplication(const QString& bus);

    QDBusConnection bus_;
    FocusCache& cache_;
    std::function<void(const QString&)> complain_;
    BusReader reader_;
    QDBusServiceWatcher applicationWatcher_;
    QDBusServiceWatcher registryWatcher_;
    QDeadlineTimer nextRegistryRestart_;
    QTimer secondRegistration_;
    /// Path of the element that an application announced last, until it has been inspected.
    QHash<QString, QString> announced_;
    QHash<QString, uint64_t> announcements_;
    QSet<QString> awaited_;
};

} // namespace corvandi
