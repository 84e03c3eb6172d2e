#pragma once

#include "ports/user_defaults.h"

#include <utility>
#include <vector>

namespace corvandi::testing {

/// Preferences in memory, with the conversions of the real store, that keep a list of all writes.
class FakeUserDefaults : public UserDefaults {
public:
    void registerDefaults(const std::map<QString, DefaultsValue>& defaults) override
    {
        for (const auto& [key, value] : defaults)
            registered_.insert_or_assign(key, value);
    }
    [[nodiscard]] int64_t integer(const QString& key) const override
    {
        return string(key).value_or(QString()).toLongLong();
    }
    [[nodiscard]] bool boolean(const QString& key) const override
    {
        const QString text = string(key).value_or(QString()).toLower();
        return text == QLatin1String("true") || text == QLatin1String("yes") || text == QLatin1String("on") ||
               integer(key) != 0;
    }
    [[nodiscard]] std::optional<QString> string(const QString& key) const override
    {
        const DefaultsValue* value = find(key);
        if (!value)
            return std::nullopt;
        if (const auto* text = std::get_if<QString>(value))
            return *text;
        if (const auto* flag = std::get_if<bool>(value))
            return *flag ? QStringLiteral("true") : QStringLiteral("false");
        return QString::number(std::get<int64_t>(*value));
    }
    void set(const QString& key, const DefaultsValue& value) override
    {
        writes.emplace_back(key, value);
        persistent.insert_or_assign(key, value);
    }

    /// What the user's own layer holds; tests may fill it beforehand.
    std::map<QString, DefaultsValue> persistent;
    /// Every call of `set`, in order.
    std::vector<std::pair<QString, DefaultsValue>> writes;

private:
    [[nodiscard]] const DefaultsValue* find(const QString& key) const
    {
        if (const auto own = persistent.find(key); own != persistent.end())
            return &own->second;
        const auto registered = registered_.find(key);
        return registered == registered_.end() ? nullptr : &registered->second;
    }

    std::map<QString, DefaultsValue> registered_;
};

} // namespace corvandi::testing
