#pragma once

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QObject>

#include <memory>

namespace corvandi {

/// Finds the accessibility bus by asking the session bus for its address, which also starts it if it
/// can be started. Asks by itself whenever the program that answers appears.
///
/// Thread: a worker thread; nothing here waits for another program.
class AccessibilityBusFinder : public QObject {
    Q_OBJECT

public:
    AccessibilityBusFinder();
    ~AccessibilityBusFinder() override;

    AccessibilityBusFinder(const AccessibilityBusFinder&) = delete;
    AccessibilityBusFinder& operator=(const AccessibilityBusFinder&) = delete;

    /// Ends in one of the signals, unless a search is going on already.
    void look();

Q_SIGNALS:
    void found(const QString& address);
    /// `reason` is for the log.
    void failed(const QString& reason);

private Q_SLOTS:
    void sessionLost();

private:
    void connectToSession();
    void finish();

    QString sessionName_;
    QDBusConnection session_;
    QDBusServiceWatcher watcher_;
    std::unique_ptr<QDBusPendingCallWatcher> asking_;
};

} // namespace corvandi
