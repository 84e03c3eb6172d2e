#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTemporaryDir>

namespace corvandi::testing {

/// The part of a desktop that stands behind the settings portal: it knows one setting. Lives on a
/// connection of its own.
class SettingsBackend : public QDBusVirtualObject {
public:
    explicit SettingsBackend(uint colorScheme);
    ~SettingsBackend() override;

    /// Changes the setting and tells everybody.
    void set(uint colorScheme);
    static QString serviceName() { return QStringLiteral("org.freedesktop.impl.portal.desktop.test"); }

private:
    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

    QDBusConnection bus_;
    uint colorScheme_;
};

/// The real desktop portal, told to ask the backend above.
class Portal {
public:
    Portal();
    ~Portal();
    Portal(const Portal&) = delete;
    Portal& operator=(const Portal&) = delete;

    [[nodiscard]] static bool isInstalled();
    void start();
    void end();
    /// Lets it answer nothing, or answer again.
    void freeze();
    void thaw();

private:
    QTemporaryDir folder_;
    QProcess process_;
};

} // namespace corvandi::testing
