#pragma once

#include "shell/updates/version.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <map>

namespace corvandi {

/// The largest package that is downloaded, in bytes.
inline constexpr int64_t maximumPackageLength = 500'000'000;

/// A release as its maintainers have signed it.
struct Release {
    Version version;
    /// Where its package lies.
    QUrl package;
    /// Of the package, in bytes: 1...maximumPackageLength.
    int64_t length = 0;
    /// Of the package: 64 bytes.
    QByteArray sha512;
    /// What is new, for the person; plain text, possibly empty.
    QString notes;
    /// Per distribution (as /etc/os-release calls it in ID) the oldest version that it runs on. Nothing
    /// is required of a distribution that is not in here.
    std::map<QString, Version> minimumSystem;

    /// "deb", "rpm" or "flatpak": what the system's installer knows.
    [[nodiscard]] QString packageType() const { return package.path().section(u'.', -1); }
};

/// The program that runs, and on what.
struct RunningProgram {
    Version version;
    /// As in /etc/os-release: ID, and VERSION_ID (empty where there is none).
    QString system;
    QString systemVersion;
};

} // namespace corvandi
