#pragma once

#include "base/error.h"
#include "ports/file_system.h"

#include <cerrno>
#include <system_error>

namespace corvandi {

/// Throws what the system says about an error number; by default about its last error.
[[noreturn]] inline void throwSystemFailure(int number = errno)
{
    throw Error(QString::fromStdString(std::generic_category().message(number)));
}

/// The files of a local disk or a network share.
///
/// What is replaced gets a new file beside it first, named ".<name>.corvandi-" with six random
/// characters, which takes its name when it is complete and on the disk. A file of that kind that a
/// killed process has left is removed by the next write to the same file; no other file is ever touched.
///
/// Descriptions of errors are the system's own ("No space left on device"); they hold no path. A file that
/// is none but a pipe or a device is not read, as that might not end.
///
/// Everything waits for the disk, for as long as it takes: a disk or server that hangs keeps the calling
/// thread. When the process is killed meanwhile, the old content stands.
class PosixFileSystem : public FileSystem {
public:
    void createDirectory(const QString& path) override;
    [[nodiscard]] bool exists(const QString& path) override;
    [[nodiscard]] QByteArray read(const QString& path) override;
    void writeAtomically(const QString& path, const QByteArray& content) override;
    void remove(const QString& path) override;
    void move(const QString& from, const QString& to) override;
};

} // namespace corvandi
