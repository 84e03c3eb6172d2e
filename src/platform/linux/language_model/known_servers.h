#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace corvandi {

/// The ports at which model servers listen unless they are told otherwise, in the order in which they are
/// preferred.
[[nodiscard]] const std::vector<quint16>& usualServerPorts();

/// Where programs and services are installed.
struct InstallationFolders {
    QStringList programs;
    QStringList services;

    /// Those of the environment: PATH, and the system's and the user's folders of systemd units.
    [[nodiscard]] static InstallationFolders ofThisMachine();
};

/// Whether a known model server is installed: an executable in a folder of programs or a service. Looks
/// at the disk.
///
/// Thread: any.
[[nodiscard]] bool isModelServerInstalled(const InstallationFolders& folders);

/// The machine's memory in bytes, as far as the kernel hands it out.
[[nodiscard]] quint64 usableMemory();

} // namespace corvandi
