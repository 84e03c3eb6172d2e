#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace corvandi {

/// What one desktop file says about an application, as far as it helps to tell applications apart.
struct DesktopEntry {
    /// The file's name below its applications folder, "/" as "-", without the suffix.
    QString id;
    /// The class that its windows bear; often empty.
    QString startupWmClass;
    /// The file name of the program that is started, without folder; empty when there is none.
    QString executable;
    QStringList categories;
    QStringList mimeTypes;
    /// Not offered in menus: a helper or a second entry of something else.
    bool noDisplay = false;
    /// Stands for "there is no such application", whatever folders of less precedence hold.
    bool hidden = false;
};

/// Reads the main group of a desktop file; nothing when it does not describe an application. Keys that
/// are missing or malformed are left empty.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(const QString& id, const QByteArray& content);

} // namespace corvandi
