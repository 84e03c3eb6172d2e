#pragma once

#include <QString>
#include <QStringList>

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

} // namespace corvandi
