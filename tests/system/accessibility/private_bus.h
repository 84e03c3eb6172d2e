#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>

namespace corvandi::testing {

/// A message bus of the test's own, which starts no service by itself.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    [[nodiscard]] QDBusConnection connection() const { return QDBusConnection(connectionName_); }
    /// Runs the desktop's real accessibility service on this bus.
    void startAccessibility();
    void endAccessibility();
    /// Ends the bus itself.
    void end();

private:
    [[nodiscard]] QString address() const;

    QTemporaryDir folder_;
    QString connectionName_;
    QProcess daemon_;
    QProcess launcher_;
};

} // namespace corvandi::testing
