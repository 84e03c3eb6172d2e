#pragma once

#include "ports/file_system.h"
#include "ports/login_item.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

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

/// Where the desktop looks for what it starts at login.
struct AutostartFolders {
    /// Need not exist.
    QString user;
    /// The first has most precedence, all have less than the user's.
    QStringList system;

    /// As XDG_CONFIG_HOME and XDG_CONFIG_DIRS (or their standard defaults) say.
    [[nodiscard]] static AutostartFolders fromEnvironment();
};

/// The program's entry among those that the desktop starts at login. The files are the only state: what
/// the desktop's own settings change in them is seen at once.
///
/// The user's entry counts before those of the system; one that is hidden or switched off means no, and so
/// does one that can't be read. Switching on writes the user's entry anew, so that it names the program
/// where it is now. Switching off removes it or, if an entry of the system would start the program then,
/// hides that one.
///
/// Errors are `Error`s with a sentence for people. Waits for the disk; when the process is killed
/// meanwhile, the old entry stands.
class AutostartLoginItem : public LoginItem {
public:
    /// `program`: the absolute path of what is to be started. `files` outlives it.
    AutostartLoginItem(AutostartFolders folders, QString program, FileSystem& files);

    [[nodiscard]] bool isEnabled() override;
    void enable() override;
    void disable() override;

private:
    [[nodiscard]] bool startsFromSystem();
    /// False for one that can't be read.
    [[nodiscard]] bool starts(const QString& path);
    [[nodiscard]] bool isThere(const QString& path);
    void write(const QByteArray& entry);

    AutostartFolders folders_;
    QString program_;
    FileSystem& files_;
    QString userEntry_;
};

} // namespace corvandi
