#include "system/files/replacement_file.h"

#include "system/files/posix_file_system.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

namespace corvandi {
namespace {

constexpr mode_t ownerOnly = 0600;

/// What mkostemp replaces by random letters and digits.
constexpr const char* randomPart = "XXXXXX";
constexpr qsizetype randomPartLength = 6;

QByteArray folderOf(const QByteArray& path)
{
    return path.left(path.lastIndexOf('/') + 1);
}

/// The name of a replacement, up to its random part.
QByteArray namePrefix(const QByteArray& target)
{
    return '.' + target.mid(target.lastIndexOf('/') + 1) + ".corvandi-";
}

bool isLetterOrDigit(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

bool isReplacementName(const QByteArray& name, const QByteArray& prefix)
{
    return name.startsWith(prefix) && name.size() == prefix.size() + randomPartLength &&
           std::all_of(name.cbegin() + prefix.size(), name.cend(), isLetterOrDigit);
}

bool isLockable(const FileDescriptor& file)
{
    return flock(file.get(), LOCK_EX | LOCK_NB) == 0;
}

/// Whether a file with a replacement's name is one that nobody is writing any more.
bool isLeftover(const QByteArray& path)
{
    const FileDescriptor file(open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    return file.isOpen() && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
           (status.st_mode & ALLPERMS) == ownerOnly && status.st_uid == geteuid() && isLockable(file);
}

std::vector<QByteArray> namesIn(const QByteArray& folder)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(folder.constData()), closedir);
    std::vector<QByteArray> names;
    while (const dirent* entry = listing ? readdir(listing.get()) : nullptr)
        names.emplace_back(entry->d_name);
    return names;
}

/// Makes a new name in a folder last. Some file systems can't, and say so at once.
void syncFolder(const FileDescriptor& folder)
{
    if (folder.isOpen() && fsync(folder.get()) != 0 && errno != EINVAL && errno != ENOTSUP)
        throwSystemFailure();
}

} // namespace

ReplacementFile::ReplacementFile(QByteArray target)
    : target_(std::move(target))
    , path_(folderOf(target_) + namePrefix(target_) + randomPart)
    , file_(mkostemp(path_.data(), O_CLOEXEC))
{
    if (!file_.isOpen()) {
        const int failure = errno;
        path_.clear();
        throwSystemFailure(failure);
    }
    // A file system without locks leaves the leftovers.
    (void)isLockable(file_);
}

ReplacementFile::~ReplacementFile()
{
    if (!path_.isEmpty())
        (void)unlink(path_.constData());
}

void ReplacementFile::write(const QByteArray& content)
{
    // A full disk may take a part first, and say that it is full only when asked again.
    for (qsizetype written = 0; written < content.size();) {
        const ssize_t count = ::write(file_.get(), content.constData() + written,
                                      static_cast<size_t>(content.size() - written));
        if (count < 0 && errno != EINTR)
            throwSystemFailure();
        written += std::max<ssize_t>(count, 0);
    }
}

void ReplacementFile::takePlace()
{
    // A umask may have taken rights from the owner, too.
    if (fchmod(file_.get(), ownerOnly) != 0 || fsync(file_.get()) != 0)
        throwSystemFailure();
    const FileDescriptor folder(open(folderOf(target_).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (rename(path_.constData(), target_.constData()) != 0)
        throwSystemFailure();
    path_.clear();
    syncFolder(folder);
}

void ReplacementFile::removeLeftovers(const QByteArray& target)
{
    const QByteArray folder = folderOf(target);
    const QByteArray prefix = namePrefix(target);
    for (const QByteArray& name : namesIn(folder)) {
        if (isReplacementName(name, prefix) && isLeftover(folder + name))
            (void)unlink((folder + name).constData());
    }
}

} // namespace corvandi
