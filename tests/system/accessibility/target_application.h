#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace corvandi::testing {

/// A program with a window of its own, ended with this object.
class TargetApplication {
public:
    TargetApplication(const QString& program, const QStringList& arguments);
    ~TargetApplication();

    TargetApplication(const TargetApplication&) = delete;
    TargetApplication& operator=(const TargetApplication&) = delete;

    [[nodiscard]] pid_t process() const { return static_cast<pid_t>(process_.processId()); }
    /// Waits until it says that this field of its window has the focus.
    [[nodiscard]] bool hasFocusOn(const QString& field);

    void stop() const;
    void resume() const;
    /// Ends it at once and waits until it is gone.
    void kill();

private:
    QProcess process_;
    QString output_;
};

/// Asks the window manager to make the window with this title active, and does not wait for it.
void activateWindow(const QString& title);
void pressKey(const QString& key);

} // namespace corvandi::testing
