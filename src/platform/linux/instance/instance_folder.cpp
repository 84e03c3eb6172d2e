#include "platform/linux/instance/instance_folder.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

namespace corvandi {
namespace {

constexpr mode_t onlyTheOwner = S_IRWXU;

bool isPrivateFolder(const QByteArray& path)
{
    struct stat status = {};
    if (lstat(path.constData(), &status) != 0 || !S_ISDIR(status.st_mode))
        return false;
    return status.st_uid == getuid() && (status.st_mode & ALLPERMS) == onlyTheOwner;
}

} // namespace

std::optional<QString> instanceFolder(const QString& temporaryFolder)
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (QDir::isAbsolutePath(runtime) && access(QFile::encodeName(runtime).constData(), W_OK | X_OK) == 0)
        return runtime;

    const QString folder = temporaryFolder + QStringLiteral("/corvandi-") + QString::number(getuid());
    const QByteArray path = QFile::encodeName(folder);
    // It may exist already; what counts is what it is now.
    (void)mkdir(path.constData(), onlyTheOwner);
    return isPrivateFolder(path) ? std::optional(folder) : std::nullopt;
}

} // namespace corvandi
