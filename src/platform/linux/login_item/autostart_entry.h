#pragma once

#include <QByteArray>
#include <QString>

namespace corvandi {

/// The name of this program's file in the folders of autostart entries.
[[nodiscard]] QString autostartEntryName();

/// An entry with which the desktop starts `program`, an absolute path, at login. The path is quoted, so
/// that it may hold anything. Once the program is not there any more, the desktop passes over the entry.
[[nodiscard]] QByteArray startingEntry(const QString& program);
/// An entry that stands for "there is no such entry", whatever folders of less precedence hold.
[[nodiscard]] QByteArray hiddenEntry();

/// Whether a desktop would start what the content of an entry says.
[[nodiscard]] bool startsAtLogin(const QByteArray& entry);

} // namespace corvandi
