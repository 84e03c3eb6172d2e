#include "system/preferences/qt_user_defaults.h"

#include <QStandardPaths>

namespace corvandi {
namespace {

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

QtUserDefaults::QtUserDefaults(SystemLog& log, const QString& path)
    : file_(path, log)
    , stored_(file_.read())
{
}

QtUserDefaults::~QtUserDefaults() = default;

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
    {
        const std::lock_guard guard(mutex_);
        changes_.insert_or_assign(key, value);
        isWritten_ = false;
    }
    hasWork_.notify_one();
    if (!writer_.joinable())
        writer_ = std::jthread([this](const std::stop_token& stop) { writeUntilStopped(stop); });
}

void QtUserDefaults::writeUntilStopped(const std::stop_token& stop)
{
    std::unique_lock lock(mutex_);
    while (hasWork_.wait(lock, stop, [this] { return !isWritten_; })) {
        isWritten_ = true;
        const auto changes = changes_;
        lock.unlock();
        file_.merge(changes);
        lock.lock();
    }
}

} // namespace corvandi
