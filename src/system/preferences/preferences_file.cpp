#include "system/preferences/preferences_file.h"

#include "base/error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace corvandi {
namespace {

constexpr mode_t ownerOnlyFile = 0600;
constexpr mode_t ownerOnlyFolder = 0700;

QVariant toVariant(const DefaultsValue& value)
{
    if (const auto* flag = std::get_if<bool>(&value))
        return *flag;
    if (const auto* number = std::get_if<int64_t>(&value))
        return static_cast<qlonglong>(*number);
    return std::get<QString>(value);
}

[[noreturn]] void failWithReason(const QString& what)
{
    throw Error(QStringLiteral("%1: %2").arg(what, qt_error_string(errno)));
}

void makeFolder(const QString& path)
{
    if (QFileInfo::exists(path))
        return;
    makeFolder(QFileInfo(path).path());
    if (mkdir(QFile::encodeName(path).constData(), ownerOnlyFolder) != 0 && errno != EEXIST)
        failWithReason(QStringLiteral("can't make the folder ") + path);
}

/// Makes a rename within the folder last; where the file system can't, it lasts as long as it lasts.
void syncFolder(const QString& path)
{
    const int folder = open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return;
    (void)fsync(folder);
    (void)close(folder);
}

/// Whether the file has one whole line for each of so many values.
bool isComplete(const QString& path, qsizetype valueCount)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    qsizetype found = 0;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        if (!line.endsWith('\n'))
            return false;
        found += !line.startsWith('[') && line.contains('=') ? 1 : 0;
    }
    return found == valueCount;
}

/// Writes a new file with these values and forces it onto the disk.
void writeNew(const QString& path, const QVariantMap& values)
{
    QFile::remove(path);
    QSettings settings(path, QSettings::IniFormat);
    settings.clear();
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        settings.setValue(value.key(), value.value());
    settings.sync();
    // QSettings does not notice when a full disk takes only a part of what it writes.
    if (settings.status() != QSettings::NoError || !isComplete(path, values.size()))
        throw Error(QStringLiteral("can't write ") + path);
    if (chmod(QFile::encodeName(path).constData(), ownerOnlyFile) != 0)
        failWithReason(QStringLiteral("can't protect ") + path);
}

void replace(const QString& target, const QString& replacement)
{
    if (rename(QFile::encodeName(replacement).constData(), QFile::encodeName(target).constData()) != 0)
        failWithReason(QStringLiteral("can't replace ") + target);
    syncFolder(QFileInfo(target).path());
}

QVariantMap valuesOf(const QSettings& settings)
{
    QVariantMap values;
    for (const QString& key : settings.allKeys())
        values.insert(key, settings.value(key));
    return values;
}

} // namespace

PreferencesFile::PreferencesFile(QString path, SystemLog& log)
    : path_(std::move(path))
    , log_(log)
{
}

std::map<QString, QString> PreferencesFile::read()
{
    if (!QFileInfo::exists(path_))
        return {};
    if (QFile file(path_); !file.open(QIODevice::ReadOnly)) {
        log_.write(QStringLiteral("can't read the preferences %1: %2").arg(path_, file.errorString()));
        return {};
    }
    const QSettings settings(path_, QSettings::IniFormat);
    isDamaged_ = settings.status() == QSettings::FormatError;
    if (isDamaged_)
        log_.write(QStringLiteral("the preferences %1 are damaged; using what is readable").arg(path_));
    std::map<QString, QString> values;
    const QVariantMap stored = valuesOf(settings);
    for (auto value = stored.cbegin(); value != stored.cend(); ++value) {
        // Lists and other compound values are none that this program knows.
        if (value->typeId() == QMetaType::QString)
            values.emplace(value.key(), value->toString());
    }
    return values;
}

void PreferencesFile::merge(const std::map<QString, DefaultsValue>& changes)
{
    try {
        write(changes);
    } catch (const Error& error) {
        log_.write(QStringLiteral("preferences not saved: ") + error.description());
    }
}

void PreferencesFile::write(const std::map<QString, DefaultsValue>& changes)
{
    const QFileInfo info(path_);
    const QString target = info.exists() ? info.canonicalFilePath() : path_;
    if (info.exists() && !(info.isFile() && info.isReadable() && info.isWritable()))
        throw Error(target + QStringLiteral(" is not a file that can be read and written"));
    makeFolder(QFileInfo(target).path());

    const QSettings current(target, QSettings::IniFormat);
    isDamaged_ |= current.status() == QSettings::FormatError;
    if (isDamaged_)
        copyAside(target);
    QVariantMap values = valuesOf(current);
    for (const auto& [key, value] : changes)
        values.insert(key, toVariant(value));

    const QString replacement = target + QStringLiteral(".new");
    try {
        writeNew(replacement, values);
        replace(target, replacement);
    } catch (const Error&) {
        QFile::remove(replacement);
        throw;
    }
    isDamaged_ = false;
}

void PreferencesFile::copyAside(const QString& target) const
{
    const QString aside = target + QStringLiteral(".corrupt");
    QFile::remove(aside);
    QFile file(target);
    if (!file.copy(aside))
        throw Error(QStringLiteral("can't copy the damaged file aside: ") + file.errorString());
    (void)chmod(QFile::encodeName(aside).constData(), ownerOnlyFile);
    log_.write(QStringLiteral("the damaged preferences were copied to ") + aside);
}

} // namespace corvandi
