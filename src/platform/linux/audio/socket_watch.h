#pragma once

#include <QFileSystemWatcher>

#include <functional>

namespace corvandi {

/// Tells when something changes in the folder in which the sound server puts its socket: a server that
/// starts is noticed at once and without asking again and again. The folder need not exist yet. A
/// server that is reached through the network can't be noticed this way.
///
/// Thread: main thread only.
class SocketWatch {
public:
    explicit SocketWatch(std::function<void()> changed);

private:
    void watchFolders();

    QFileSystemWatcher watcher_;
};

} // namespace corvandi
