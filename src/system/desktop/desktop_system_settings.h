#pragma once

#include "ports/system_settings.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace corvandi {

struct SettingsCommand {
    /// A file name without folder.
    QString program;
    QStringList arguments;

    friend bool operator==(const SettingsCommand&, const SettingsCommand&) = default;
};

/// What opens the accessibility page on these desktops (as XDG_CURRENT_DESKTOP names them, in any case of
/// letters), the best first. Empty when none of them has a page that is known.
[[nodiscard]] std::vector<SettingsCommand> accessibilitySettings(const QStringList& desktops);

/// The settings programs of GNOME, KDE, Xfce and their relatives. What is started outlives this program
/// and is not waited for; what becomes of it is not learned.
///
/// Where the desktop has no such page, its program is not installed or can't be started, the user is told
/// in a sentence what to do instead. No desktop has a page for the language model, which is a local server
/// of the user's.
///
/// Thread: main thread only. Starting a program takes a few milliseconds.
class DesktopSystemSettings : public SystemSettings {
public:
    /// `desktops`: the session's desktop and those it derives from. `tell` shows a sentence to the user.
    /// Programs are sought in `programFolders`, or as PATH says when that is empty.
    DesktopSystemSettings(QStringList desktops, std::function<void(const QString&)> tell,
                          QStringList programFolders = {});

    /// What XDG_CURRENT_DESKTOP says.
    [[nodiscard]] static QStringList desktopsFromEnvironment();

    void open(SystemSettingsPage page) override;

private:
    [[nodiscard]] bool openAccessibility() const;

    QStringList desktops_;
    std::function<void(const QString&)> tell_;
    QStringList programFolders_;
};

} // namespace corvandi
