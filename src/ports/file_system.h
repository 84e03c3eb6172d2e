#pragma once

#include <QByteArray>
#include <QString>

namespace corvandi {

/// The files of one user. Paths are absolute. Whatever fails throws an `Error` whose description says
/// what the system said.
///
/// Thread: any; calls for the same path are the caller's to keep apart.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// Makes the folder and those above it that are missing, for the user alone (0700). A folder that
    /// exists is left as it is.
    virtual void createDirectory(const QString& path) = 0;
    /// Whether a file or a folder stands at `path`. A symbolic link counts as what it leads to, so one that
    /// leads nowhere is nothing.
    [[nodiscard]] virtual bool exists(const QString& path) = 0;
    /// The whole content of a file.
    [[nodiscard]] virtual QByteArray read(const QString& path) = 0;
    /// Replaces the content of the file at `path`, or makes it, for the user alone (0600). Whoever reads
    /// it, also after a crash at any moment, finds the old content or the new one, whole. On return the
    /// new content is on the disk. Through a symbolic link the file that it leads to is replaced or made.
    /// When it throws, the old content stands (or, if the disk failed after all was written, the new one).
    virtual void writeAtomically(const QString& path, const QByteArray& content) = 0;
    /// Removes a file, a link or an empty folder.
    virtual void remove(const QString& path) = 0;
    /// Gives what stands at `from` the name `to`, where nothing `exists`. A link is renamed itself.
    virtual void move(const QString& from, const QString& to) = 0;
};

} // namespace corvandi
