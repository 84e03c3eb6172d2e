#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>

namespace corvandi::testing {

/// A service that says whether the session is locked: a screen saver, or the one that keeps the sessions.
/// Lives on a connection of its own.
class LockTeller : public QDBusVirtualObject {
public:
    struct Manner {
        QString service;
        QString path;
        /// The path of its notices.
        QString noticePath;
        QString interface;
    };

    /// One that is asked with `GetActive`.
    [[nodiscard]] static Manner screenSaver(const QString& name);
    /// One with a property `LockedHint`, as logind.
    [[nodiscard]] static Manner sessionKeeper();

    LockTeller(Manner manner, bool isLocked = false);
    ~LockTeller() override;

    /// Changes what it says, and gives notice.
    void set(bool isLocked);
    /// Leaves all questions unanswered from now on.
    void hang() { hangs_ = true; }
    [[nodiscard]] int questions() const { return questions_; }

private:
    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

    Manner manner_;
    QString connectionName_;
    QDBusConnection bus_;
    bool isLocked_;
    bool hangs_ = false;
    int questions_ = 0;
};

} // namespace corvandi::testing
