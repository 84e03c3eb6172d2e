#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class QDBusPendingCallWatcher;

namespace corvandi {

/// One value that a service on a bus tells when asked, followed: it is asked for again when the
/// service sends its notice of changes and when it gets another owner.
///
/// Nothing here waits. A question that is not answered within five seconds has failed. Without a bus nothing
/// is ever asked. Thread: main thread only.
class FollowedValue : public QObject {
    Q_OBJECT

public:
    struct Source {
        QString service;
        /// Of the notices; empty when they come from any.
        QString path;
        /// The signal that tells of changes, and what its first arguments must be to concern the value.
        QString noticeInterface;
        QString notice;
        QStringList noticeArguments;
        /// Answered with the value.
        QDBusMessage question;
    };
    struct Callbacks {
        /// The latest question has been answered, or has failed; answers to older ones don't count.
        std::function<void(const QDBusPendingCall&)> answered;
        /// The service has ended, or another program has become it, which is asked next.
        std::function<void()> ownerChanged = [] {};
    };

    /// The first question goes out. The callbacks run later, never inside this call.
    FollowedValue(QDBusConnection bus, Source source, Callbacks callbacks);

    void ask();
    /// A question is under way; `answered` will follow.
    [[nodiscard]] bool isAsking() const { return question_ != nullptr; }

private Q_SLOTS:
    void onNotice();
    void onOwnerChanged(const QString& name, const QString& oldOwner, const QString& newOwner);

private:
    void take(QDBusPendingCallWatcher& question);

    QDBusConnection bus_;
    Source source_;
    Callbacks callbacks_;
    /// Owned by this object.
    QDBusPendingCallWatcher* question_ = nullptr;
};

} // namespace corvandi
