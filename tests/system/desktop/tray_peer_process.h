#pragma once

#include <QProcess>
#include <QStringList>

#include <chrono>
#include <string>

namespace corvandi::testing {

/// Runs a program to its end and returns what it printed; throws when it fails.
QString run(const QString& program, const QStringList& arguments);
/// Runs a command of the virtual desktop.
QString desktop(const QStringList& arguments);
/// The windows on the screen of the programs with this name.
QStringList openWindows(const QString& program);
/// Keeps a picture of the screen among the build's results.
void takeScreenshot(const QString& name);

/// A process with the program's icon. Ends with this object.
class TrayPeer {
public:
    static inline const QString name = QStringLiteral("Corvandi");

    /// Returns when the icon has been made.
    explicit TrayPeer(const QStringList& environment = {});
    ~TrayPeer();
    TrayPeer(const TrayPeer&) = delete;
    TrayPeer& operator=(const TrayPeer&) = delete;

    /// Changes its inputs, and returns when that is done: 'a' whether the hotkey is active, 'u' whether
    /// updates can be checked for; as capitals, the icon is told. What it said before is forgotten.
    void command(char letter);
    /// Waits until it has printed this line: "asked" for the menu's entries, "chose" something, or a
    /// line of the log.
    [[nodiscard]] bool hasSaid(const std::string& line,
                               std::chrono::milliseconds limit = std::chrono::seconds(5));
    /// Everything that it has printed, errors too.
    [[nodiscard]] std::string output() const { return output_.toStdString(); }
    [[nodiscard]] bool isRunning() const { return process_.state() == QProcess::Running; }
    [[nodiscard]] qint64 id() const { return process_.processId(); }

private:
    QProcess process_;
    QByteArray output_;
};

} // namespace corvandi::testing
