#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>

namespace corvandi::testing {

/// A folder on the disk that goes with the test.
class RealFolder {
public:
    [[nodiscard]] QString path(const char* name) const { return folder_.filePath(QLatin1String(name)); }
    [[nodiscard]] QString path() const { return folder_.path(); }

    void put(const QString& path, const QByteArray& content) const
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            throw std::runtime_error("can't write a file of the test");
    }
    void link(const QString& path, const char* target) const
    {
        if (symlink(target, QFile::encodeName(path).constData()) != 0)
            throw std::runtime_error("can't make a link of the test");
    }

private:
    QTemporaryDir folder_;
};

[[nodiscard]] inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

/// The permission bits of what stands at `path`.
[[nodiscard]] inline mode_t modeOf(const QString& path)
{
    struct stat status {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & ALLPERMS : 0;
}

inline void setMode(const QString& path, mode_t mode)
{
    if (chmod(QFile::encodeName(path).constData(), mode) != 0)
        throw std::runtime_error("can't change the mode of a file of the test");
}

/// Everything in a folder, hidden files and links to nowhere included, sorted by name.
[[nodiscard]] inline QStringList namesIn(const QString& path)
{
    return QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                QDir::Name);
}

} // namespace corvandi::testing
