#include "platform/linux/audio/sandbox.h"

#include <QFile>
#include <QSettings>

namespace corvandi {

std::optional<QString> sandboxedApplicationId()
{
    const QString flatpak = QStringLiteral("/.flatpak-info");
    if (QFile::exists(flatpak))
        return QSettings(flatpak, QSettings::IniFormat).value(QStringLiteral("Application/name")).toString();
    const QString snap = qEnvironmentVariable("SNAP_INSTANCE_NAME", qEnvironmentVariable("SNAP_NAME"));
    if (!qEnvironmentVariable("SNAP").isEmpty() && !snap.isEmpty())
        return QStringLiteral("snap.") + snap;
    return std::nullopt;
}

} // namespace corvandi
