#include "platform/linux/audio/socket_watch.h"

#include <QFileInfo>
#include <QStandardPaths>

namespace corvandi {
namespace {

/// The folder of the native protocol's socket, by the sound library's own rules.
QString socketFolder()
{
    QString server = qEnvironmentVariable("PULSE_SERVER");
    if (server.startsWith(QLatin1String("unix:")))
        server.remove(0, QLatin1String("unix:").size());
    if (server.startsWith(QLatin1Char('/')))
        return QFileInfo(server).path();
    const QString folder = qEnvironmentVariable("PULSE_RUNTIME_PATH");
    if (!folder.isEmpty())
        return folder;
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) + QLatin1String("/pulse");
}

} // namespace

SocketWatch::SocketWatch(std::function<void()> changed)
{
    QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &watcher_,
                     [this, changed = std::move(changed)] {
                         watchFolders();
                         // Last: this may destroy the watch.
                         changed();
                     });
    watchFolders();
}

void SocketWatch::watchFolders()
{
    const QString folder = socketFolder();
    for (const QString& path : {folder, QFileInfo(folder).path()}) {
        if (QFileInfo(path).isDir() && !watcher_.directories().contains(path))
            watcher_.addPath(path);
    }
}

} // namespace corvandi
