#include "system/updates/package_file.h"

#include "system/updates/sha512.h"

#include <QDir>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace corvandi {
namespace {

using Kind = UpdateFailure::Kind;

constexpr qint64 pieceLength = 256 * 1024;
constexpr QFileDevice::Permissions forTheUserAlone = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

UpdateFailure notStored(const QString& what)
{
    return {Kind::notStored, what};
}

QString lastSystemError()
{
    return QString::fromStdString(std::generic_category().message(errno));
}

/// Makes the folder the user's own and empty.
std::optional<UpdateFailure> prepare(const QString& folder)
{
    const QByteArray path = QFile::encodeName(folder);
    if (!QDir().mkpath(folder))
        return notStored(QStringLiteral("can't make the folder ") + folder);
    struct stat status {};
    if (lstat(path.constData(), &status) != 0 || !S_ISDIR(status.st_mode) || status.st_uid != geteuid())
        return notStored(folder + QStringLiteral(" is not a folder of this user"));
    if (chmod(path.constData(), S_IRWXU) != 0)
        return notStored(folder + QStringLiteral(": ") + lastSystemError());
    const QFileInfoList leftovers =
        QDir(folder).entryInfoList(QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo& leftover : leftovers)
        QFile::remove(leftover.filePath());
    return std::nullopt;
}

} // namespace

PackageFile::PackageFile(const QString& path)
    : file_(path)
{
}

PackageFile::~PackageFile()
{
    if (!isKept_)
        file_.remove();
}

UpdateResult<std::unique_ptr<PackageFile>> PackageFile::create(const QString& folder, const Release& release)
{
    if (const auto failure = prepare(folder))
        return *failure;
    const QString name = QStringLiteral("corvandi-%1.%2").arg(release.version.text(), release.packageType());
    auto file = std::unique_ptr<PackageFile>(new PackageFile(folder + u'/' + name));
    // NewOnly: never through a link that somebody has put there, never into a file that is there already.
    if (!file->file_.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered,
                          forTheUserAlone)) {
        UpdateFailure failure = file->failure();
        file->keep();
        return failure;
    }
    return file;
}

std::optional<UpdateFailure> PackageFile::append(std::string_view bytes)
{
    const auto count = static_cast<qint64>(bytes.size());
    if (file_.write(bytes.data(), count) != count)
        return failure();
    return std::nullopt;
}

std::optional<UpdateFailure> PackageFile::finish()
{
    file_.close();
    if (file_.error() != QFileDevice::NoError)
        return failure();
    return std::nullopt;
}

std::optional<UpdateFailure> PackageFile::verify(const Release& release,
                                                 const std::function<bool()>& isInterrupted) const
{
    QFile written(path());
    if (QFileInfo(path()).isSymLink() || !written.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return notStored(path() + QStringLiteral(" has gone"));
    Sha512 digest;
    QByteArray piece(pieceLength, Qt::Uninitialized);
    int64_t length = 0;
    while (length <= release.length && !isInterrupted()) {
        const qint64 count = written.read(piece.data(), piece.size());
        if (count < 0)
            return notStored(written.errorString());
        if (count == 0)
            break;
        digest.add({piece.constData(), static_cast<size_t>(count)});
        length += count;
    }
    if (length != release.length || digest.digest() != release.sha512)
        return UpdateFailure{Kind::tampered, QStringLiteral("the stored file has changed")};
    return std::nullopt;
}

UpdateFailure PackageFile::failure() const
{
    return notStored(file_.errorString());
}

} // namespace corvandi
