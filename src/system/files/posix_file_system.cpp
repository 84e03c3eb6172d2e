#include "system/files/posix_file_system.h"

#include "base/file_descriptor.h"
#include "system/files/replacement_file.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <optional>

namespace corvandi {
namespace {

constexpr mode_t ownerOnlyFolder = 0700;
/// As many as the kernel follows.
constexpr int longestLinkChain = 40;

bool isFolder(const QByteArray& path)
{
    struct stat status {};
    return stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

void makeFolder(const QByteArray& path)
{
    if (path.isEmpty() || isFolder(path))
        return;
    makeFolder(path.left(path.lastIndexOf('/')));
    if (mkdir(path.constData(), ownerOnlyFolder) == 0)
        return;
    const int failure = errno;
    // Somebody else may have been quicker.
    if (!isFolder(path))
        throwSystemFailure(failure);
}

/// Where a symbolic link leads; nothing when there is no link at `path`.
std::optional<QByteArray> linkTarget(const QByteArray& path)
{
    QByteArray target(PATH_MAX, '\0');
    const ssize_t length = readlink(path.constData(), target.data(), static_cast<size_t>(target.size()));
    if (length < 0)
        return std::nullopt;
    target.truncate(length);
    return target.startsWith('/') ? target : path.left(path.lastIndexOf('/') + 1) + target;
}

QByteArray resolved(QByteArray path)
{
    for (int links = 0; links < longestLinkChain; ++links) {
        auto target = linkTarget(path);
        if (!target)
            return path;
        path = *std::move(target);
    }
    throwSystemFailure(ELOOP);
}

/// Opens a file that can be read to its end.
FileDescriptor openForReading(const QByteArray& path)
{
    FileDescriptor file(open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!file.isOpen() || fstat(file.get(), &status) != 0)
        throwSystemFailure();
    if (S_ISDIR(status.st_mode))
        throwSystemFailure(EISDIR);
    if (!S_ISREG(status.st_mode))
        throw Error(QStringLiteral("Not a regular file"));
    return file;
}

qsizetype sizeOf(const FileDescriptor& file)
{
    struct stat status {};
    return fstat(file.get(), &status) == 0 ? static_cast<qsizetype>(status.st_size) : 0;
}

} // namespace

void PosixFileSystem::createDirectory(const QString& path)
{
    makeFolder(QFile::encodeName(path));
}

bool PosixFileSystem::exists(const QString& path)
{
    struct stat status {};
    if (stat(QFile::encodeName(path).constData(), &status) == 0)
        return true;
    if (errno != ENOENT && errno != ENOTDIR)
        throwSystemFailure();
    return false;
}

QByteArray PosixFileSystem::read(const QString& path)
{
    const FileDescriptor file = openForReading(QFile::encodeName(path));
    QByteArray content;
    qsizetype filled = 0;
    // One byte more than the file should have, so that its end is seen without another round.
    content.resize(sizeOf(file) + 1);
    while (true) {
        const ssize_t count =
            ::read(file.get(), content.data() + filled, static_cast<size_t>(content.size() - filled));
        if (count < 0 && errno != EINTR)
            throwSystemFailure();
        if (count == 0)
            break;
        filled += count > 0 ? count : 0;
        if (filled == content.size())
            content.resize(2 * filled);
    }
    content.truncate(filled);
    return content;
}

void PosixFileSystem::writeAtomically(const QString& path, const QByteArray& content)
{
    const QByteArray target = resolved(QFile::encodeName(path));
    ReplacementFile::removeLeftovers(target);
    ReplacementFile replacement(target);
    replacement.write(content);
    replacement.takePlace();
}

void PosixFileSystem::remove(const QString& path)
{
    if (std::remove(QFile::encodeName(path).constData()) != 0)
        throwSystemFailure();
}

void PosixFileSystem::move(const QString& from, const QString& to)
{
    if (rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        throwSystemFailure();
}

} // namespace corvandi
