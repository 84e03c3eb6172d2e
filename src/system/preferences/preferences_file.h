#pragma once

#include "ports/system_log.h"
#include "ports/user_defaults.h"

#include <QString>

#include <map>

namespace corvandi {

/// The preferences as a file of `key=value` lines, in QSettings' INI format.
///
/// The file is replaced as a whole: whatever fails on the way leaves the former one in place. What
/// other programs have written into it meanwhile is kept. The file is readable for its owner only, as
/// is its folder, which is made when it is missing. A symbolic link stays one.
///
/// Every failure is logged. Thread: one at a time; reading and writing wait for the disk.
class PreferencesFile {
public:
    PreferencesFile(QString path, SystemLog& log);

    /// Every readable value by its key; none when there is no file, or when it can't be read. Of a
    /// damaged file the readable lines count.
    [[nodiscard]] std::map<QString, QString> read();
    /// Puts `changes` over what the file holds now. A file that is damaged is copied aside beforehand
    /// (to its name with ".corrupt" appended), as the lines that can't be read get lost. A file that
    /// can't be read or that is write-protected stays as it is.
    void merge(const std::map<QString, DefaultsValue>& changes);

private:
    void write(const std::map<QString, DefaultsValue>& changes);
    void copyAside(const QString& target) const;

    QString path_;
    SystemLog& log_;
    bool isDamaged_ = false;
};

} // namespace corvandi
