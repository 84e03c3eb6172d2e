#include "system/preferences/qt_user_defaults.h"

#include "system/preferences/preferences_file.h"

#include <QStandardPaths>

#include <mutex>
#include <utility>

namespace corvandi {
namespace {

/// For a disk that hangs.
constexpr auto longestWait = std::chrono::seconds(30);

/// A value as the file shows it.
QString toText(const DefaultsValue& value)
{
    if (const auto* flag = std::get_if<bool>(&value))
        return *flag ? QStringLiteral("true") : QStringLiteral("false");
    if (const auto* number = std::get_if<int64_t>(&value))
        return QString::number(*number);
    return std::get<QString>(value);
}

int64_t toInteger(const QString& text)
{
    return text.toLongLong();
}

bool toBoolean(const QString& text)
{
    for (const QLatin1String word : {QLatin1String("true"), QLatin1String("yes"), QLatin1String("on")}) {
        if (text.compare(word, Qt::CaseInsensitive) == 0)
            return true;
    }
    return toInteger(text) != 0;
}

} // namespace

/// The file, and what it is to hold.
struct QtUserDefaults::ChangedFile {
    ChangedFile(const QString& path, SystemLog& log)
        : file(path, log)
    {
    }

    /// Whether somebody has to write. Thread: main thread.
    [[nodiscard]] bool change(const QString& key, const DefaultsValue& value)
    {
        const std::lock_guard guard(mutex);
        changes.insert_or_assign(key, value);
        return !std::exchange(isAwaitingWrite, true);
    }

    /// Thread: the worker's.
    void write()
    {
        std::unique_lock lock(mutex);
        isAwaitingWrite = false;
        const auto present = changes;
        lock.unlock();
        file.merge(present);
    }

    /// The worker's alone once something was set.
    PreferencesFile file;
    std::mutex mutex;
    /// Everything that was set so far; a failed write is made up for by the next.
    std::map<QString, DefaultsValue> changes;
    bool isAwaitingWrite = false;
};

QtUserDefaults::QtUserDefaults(SystemLog& log, const QString& path)
    : log_(log)
    , file_(std::make_shared<ChangedFile>(path, log))
    , stored_(file_->file.read())
    , writer_(QStringLiteral("preferences"), Worker::AtEnd::finish, longestWait)
{
}

QtUserDefaults::~QtUserDefaults()
{
    if (!writer_.end())
        log_.write(QStringLiteral("the preferences take too long to write"));
}

QString QtUserDefaults::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Corvandi/Corvandi.conf");
}

void QtUserDefaults::registerDefaults(const std::map<QString, DefaultsValue>& defaults)
{
    for (const auto& [key, value] : defaults)
        registered_.insert_or_assign(key, toText(value));
}

int64_t QtUserDefaults::integer(const QString& key) const
{
    return toInteger(string(key).value_or(QString()));
}

bool QtUserDefaults::boolean(const QString& key) const
{
    return toBoolean(string(key).value_or(QString()));
}

std::optional<QString> QtUserDefaults::string(const QString& key) const
{
    if (const auto own = stored_.find(key); own != stored_.end())
        return own->second;
    if (const auto standard = registered_.find(key); standard != registered_.end())
        return standard->second;
    return std::nullopt;
}

void QtUserDefaults::set(const QString& key, const DefaultsValue& value)
{
    stored_.insert_or_assign(key, toText(value));
    if (file_->change(key, value))
        writer_.post([file = file_](const std::stop_token&) { file->write(); });
}

} // namespace corvandi
