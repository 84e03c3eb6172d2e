#include "platform/linux/focus/bus_reader.h"

#include <QDBusError>
#include <QDBusPendingCall>
#include <QThread>

#include <algorithm>

namespace corvandi {
namespace {

using std::chrono::milliseconds;

/// Calls that travel together. More would fill the queue of an application that is slow, with work that
/// nobody waits for any more.
constexpr size_t callsPerRound = 64;

QDBusError noReply()
{
    return {QDBusError::NoReply, QStringLiteral("not asked")};
}

} // namespace

bool isUnanswered(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ErrorMessage)
        return false;
    const QDBusError error(reply);
    return error.type() == QDBusError::NoReply || error.type() == QDBusError::Timeout ||
           error.type() == QDBusError::TimedOut;
}

BusReader::BusReader(const QDBusConnection& bus, std::function<void(const QString&)> fellSilent)
    : bus_(bus)
    , fellSilent_(std::move(fellSilent))
{
}

std::vector<QDBusMessage> BusReader::ask(std::span<const QDBusMessage> calls, const QDeadlineTimer& deadline)
{
    std::vector<QDBusMessage> replies;
    replies.reserve(calls.size());
    while (!calls.empty()) {
        const size_t count = std::min(calls.size(), callsPerRound);
        askTogether(calls.first(count), deadline, replies);
        calls = calls.subspan(count);
    }
    return replies;
}

void BusReader::askTogether(std::span<const QDBusMessage> calls, const QDeadlineTimer& deadline,
                            std::vector<QDBusMessage>& replies)
{
    const milliseconds limit =
        std::min(answerLimit, std::chrono::duration_cast<milliseconds>(deadline.remainingTimeAsDuration()));
    const bool late = limit <= milliseconds(0) || QThread::currentThread()->isInterruptionRequested();
    std::vector<QDBusPendingCall> pending;
    pending.reserve(calls.size());
    for (const QDBusMessage& call : calls) {
        pending.push_back(late || isSilent(call.service())
                              ? QDBusPendingCall::fromError(noReply())
                              : bus_.asyncCall(call, static_cast<int>(limit.count())));
    }
    QSet<QString> asked;
    QSet<QString> answered;
    for (size_t i = 0; i < pending.size(); ++i) {
        pending[i].waitForFinished();
        replies.push_back(pending[i].reply());
        asked.insert(calls[i].service());
        if (!isUnanswered(replies.back()))
            answered.insert(calls[i].service());
    }
    // Less than the full time says nothing about the application.
    if (limit == answerLimit && !late)
        noteSilence(asked, answered);
}

void BusReader::noteSilence(const QSet<QString>& asked, const QSet<QString>& answered)
{
    for (const QString& bus : asked) {
        if (answered.contains(bus) || isSilent(bus))
            continue;
        silentUntil_.insert(bus, QDeadlineTimer(silenceLength));
        fellSilent_(bus);
    }
}

bool BusReader::isSilent(const QString& bus) const
{
    const auto until = silentUntil_.find(bus);
    return until != silentUntil_.end() && !until->hasExpired();
}

void BusReader::endSilence(const QString& bus)
{
    silentUntil_.remove(bus);
}

} // namespace corvandi
