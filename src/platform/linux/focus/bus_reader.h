#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QHash>
#include <QSet>

#include <chrono>
#include <functional>
#include <span>
#include <vector>

namespace corvandi {

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
