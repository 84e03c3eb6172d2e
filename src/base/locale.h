#pragma once

#include <QString>

#include <optional>

namespace corvandi {

/// The system's name of the locale of texts ("de_AT.UTF-8@euro"), as the environment says (LC_ALL,
/// LC_MESSAGES, LANG, in this order); empty when it names none.
[[nodiscard]] QString environmentLocaleName();

/// A language with, usually, a region, known by its BCP 47 identifier (such as "en-US").
class Locale {
public:
    explicit Locale(QString bcp47)
        : bcp47_(std::move(bcp47))
    {
    }

    /// The locale that the environment names. The "C" and "POSIX" locales, and an environment that names
    /// none, mean American English.
    [[nodiscard]] static Locale current();
    /// The locale that `text` names in BCP 47's way, in any letter case; nothing when it is no such name, or
    /// one of a language that nobody knows.
    [[nodiscard]] static std::optional<Locale> fromTag(const QString& text);

    [[nodiscard]] const QString& bcp47() const { return bcp47_; }
    /// The language subtag in lower case ("en"), or nothing when there is none.
    [[nodiscard]] std::optional<QString> languageCode() const;
    /// The name of the locale with this identifier (parts separated by "_") in this locale's own
    /// language, for instance "German (Germany)"; nothing when the language has no name.
    [[nodiscard]] std::optional<QString> localizedString(const QString& identifier) const;

    friend bool operator==(const Locale&, const Locale&) = default;

private:
    QString bcp47_;
};

} // namespace corvandi
