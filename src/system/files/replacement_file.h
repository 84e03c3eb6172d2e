#pragma once

#include "base/file_descriptor.h"

#include <QByteArray>

namespace corvandi {

/// A new file beside another one, whose place it takes once it is complete. Only the user can read it.
/// Removed at the end when it has not taken the place. Every failure throws an `Error`.
///
/// It is locked while it is being written, so that one that was left behind is told from one in use.
class ReplacementFile {
public:
    /// `target` is an absolute path that is no symbolic link.
    explicit ReplacementFile(QByteArray target);
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    void write(const QByteArray& content);
    /// Forces what was written onto the disk, then puts it in the target's place.
    void takePlace();

    /// Removes replacements for `target` that a killed process has left. What can't be removed stays.
    static void removeLeftovers(const QByteArray& target);

private:
    QByteArray target_;
    QByteArray path_;
    FileDescriptor file_;
};

} // namespace corvandi
