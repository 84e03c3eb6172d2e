#pragma once

#include "ports/update_source.h"
#include "shell/updates/version.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <map>

namespace corvandi {

/// A release as its makers have signed it.
struct Release {
    Version version;
    /// What the browser shows of it: where it can be had.
    QUrl page;
    /// What is new, for the person; plain text, possibly empty.
    QString notes;
    /// Per distribution (as /etc/os-release calls it in ID) the oldest version that it runs on. Nothing
    /// is required of a distribution that is not in here.
    std::map<QString, Version> minimumSystem;
};

/// Reads a manifest, a JSON object in UTF-8:
///
///     {
///         "version": "1.2.0",
///         "page": "https://example.org/corvandi-1.2.0",
///         "notes": "What is new.",
///         "minimumSystem": { "debian": "12" }
///     }
///
/// "notes" and "minimumSystem" may be missing, unknown members are ignored. The page is an HTTPS address
/// without user name or password. Anything else is `unreadable`.
///
/// Thread: any.
[[nodiscard]] UpdateResult<Release> readManifest(const QByteArray& manifest);

/// The program that runs, and on what.
struct RunningProgram {
    Version version;
    /// As in /etc/os-release: ID, and VERSION_ID (empty where there is none).
    QString system;
    QString systemVersion;

    /// The version that this program was built as, and the system that it runs on.
    [[nodiscard]] static RunningProgram thisOne();
};

} // namespace corvandi
