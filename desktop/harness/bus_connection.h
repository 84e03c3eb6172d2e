#pragma once

#include <QDBusConnection>
#include <QVariant>

#include <sys/types.h>

#include <memory>
#include <string>

namespace corvandi::harness {

/// A connection of its own to a message bus of the desktop that is in the environment. Calls wait for the
/// answer and need no event loop.
class BusConnection {
public:
    /// The session's bus. Throws HarnessError when there is none.
    [[nodiscard]] static std::shared_ptr<BusConnection> toSession();
    /// The bus of the assistive programs, which the session's bus starts. Throws HarnessError when there is
    /// none.
    [[nodiscard]] static std::shared_ptr<BusConnection> toAccessibility();

    explicit BusConnection(const QString& address);
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;
    ~BusConnection();

    struct Target {
        QString service;
        QString path;
        QString interface;
    };
    /// What the method answers. Throws HarnessError when it fails or takes longer than `patience`.
    QVariantList call(const Target& target, const QString& method, const QVariantList& arguments = {}) const;
    [[nodiscard]] QVariant property(const Target& target, const QString& name) const;
    void setProperty(const Target& target, const QString& name, const QVariant& value) const;
    /// The process behind a name on the bus; 0 when nobody has that name (any more).
    [[nodiscard]] pid_t processOf(const QString& service) const;

private:
    QString name_;
    QDBusConnection connection_;
};

} // namespace corvandi::harness
