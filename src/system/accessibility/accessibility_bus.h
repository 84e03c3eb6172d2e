#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDeadlineTimer>
#include <QHash>
#include <QLocalSocket>
#include <QObject>
#include <QSet>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace corvandi {

/// Knocks at a bus and waits until it answers. Connecting to one that hangs would keep all other buses of
/// this process waiting together with it, for as long as it hangs.
///
/// Thread: a worker thread; nothing here waits. Destroying it ends the waiting.
class BusGreeting : public QObject {
    Q_OBJECT

public:
    /// `address` is in the form in which buses tell their addresses. Ends in `answered` or `failed`, or
    /// in none of them while the bus hangs; both come later, never from inside the constructor.
    explicit BusGreeting(QString address);

Q_SIGNALS:
    void answered(const QString& address);
    /// `reason` is for the log.
    void failed(const QString& reason);

private:
    void knock();

    QString address_;
    QLocalSocket socket_;
};

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
    void search();

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

/// Reads from applications that may be slow, hung or gone, in bounded time.
///
/// An application that leaves a whole round of calls unanswered for `answerLimit` counts as silent: for
/// `silenceLength`, or until it answers after all, calls to it fail at once without being sent.
///
/// Thread: one worker thread, which waits inside `ask`. Once that thread is requested to interrupt,
/// nothing is sent any more.
class BusReader {
public:
    /// How long a call may take. Applications that live answer within a few milliseconds.
    static constexpr std::chrono::milliseconds answerLimit{100};
    static constexpr std::chrono::seconds silenceLength{5};

    /// `fellSilent` is called, from inside `ask`, with the unique name of an application that did.
    BusReader(const QDBusConnection& bus, std::function<void(const QString&)> fellSilent);

    /// One reply per call, in their order; an error for each that was not answered before the deadline.
    /// The calls travel together, so that many of them cost little more than one.
    [[nodiscard]] std::vector<QDBusMessage> ask(std::span<const QDBusMessage> calls,
                                                const QDeadlineTimer& deadline);

    [[nodiscard]] bool isSilent(const QString& bus) const;
    /// It has answered, or it is gone.
    void endSilence(const QString& bus);

private:
    void askTogether(std::span<const QDBusMessage> calls, const QDeadlineTimer& deadline,
                     std::vector<QDBusMessage>& replies);
    void noteSilence(const QSet<QString>& asked, const QSet<QString>& answered);

    QDBusConnection bus_;
    std::function<void(const QString&)> fellSilent_;
    QHash<QString, QDeadlineTimer> silentUntil_;
};

/// Whether the call got no reply at all, in contrast to one that was refused.
[[nodiscard]] bool isUnanswered(const QDBusMessage& reply);

} // namespace corvandi
