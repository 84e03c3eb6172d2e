#pragma once

#include <QString>

#include <map>
#include <optional>
#include <variant>

namespace corvandi {

using DefaultsValue = std::variant<bool, int64_t, QString>;

/// The persistent preferences of the user, with a layer of registered defaults beneath.
///
/// Thread: main thread only. A store that can't be read behaves like an empty one, one that can't be
/// written keeps the values for the life of the program; both are logged.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// Sets what a key answers while the user has never set it. Writes nothing to the store.
    virtual void registerDefaults(const std::map<QString, DefaultsValue>& defaults) = 0;
    /// The value under `key` as a whole number; 0 when it is none or absent.
    [[nodiscard]] virtual int64_t integer(const QString& key) const = 0;
    /// The value under `key` as a truth value; false when it is none or absent.
    [[nodiscard]] virtual bool boolean(const QString& key) const = 0;
    /// The value under `key` as text; nothing when it is absent.
    [[nodiscard]] virtual std::optional<QString> string(const QString& key) const = 0;
    /// Stores the value; it reaches the disk without further calls.
    virtual void set(const QString& key, const DefaultsValue& value) = 0;
};

} // namespace corvandi
