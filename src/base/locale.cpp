#include "base/locale.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <array>

namespace corvandi {

QString environmentLocaleName()
{
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QString value = qEnvironmentVariable(variable);
        if (!value.isEmpty())
            return value;
    }
    return {};
}

namespace {

constexpr auto fallbackIdentifier = "en-US";

icu::Locale parse(const QString& bcp47)
{
    UErrorCode status = U_ZERO_ERROR;
    const QByteArray tag = bcp47.toUtf8();
    return icu::Locale::forLanguageTag({tag.constData(), static_cast<int32_t>(tag.size())}, status);
}

} // namespace

Locale Locale::current()
{
    QString name = environmentLocaleName();
    name = name.section(QLatin1Char('.'), 0, 0).section(QLatin1Char('@'), 0, 0);
    if (name.isEmpty() || name == QLatin1String("C") || name == QLatin1String("POSIX"))
        return Locale(QLatin1String(fallbackIdentifier));
    UErrorCode status = U_ZERO_ERROR;
    const auto tag = icu::Locale(name.toUtf8().constData()).toLanguageTag<std::string>(status);
    return Locale(U_SUCCESS(status) ? QString::fromStdString(tag) : QLatin1String(fallbackIdentifier));
}

std::optional<Locale> Locale::fromTag(const QString& text)
{
    UErrorCode status = U_ZERO_ERROR;
    const QByteArray given = text.toUtf8();
    const icu::Locale parsed =
        icu::Locale::forLanguageTag({given.constData(), static_cast<int32_t>(given.size())}, status);
    const auto tag = parsed.toLanguageTag<std::string>(status);
    // Any word of five to eight letters has the form of a language.
    const bool isKnown = *parsed.getISO3Language() != '\0';
    if (U_FAILURE(status) || !isKnown)
        return std::nullopt;
    return Locale(QString::fromStdString(tag));
}

std::optional<QString> Locale::languageCode() const
{
    const QString code = QString::fromLatin1(parse(bcp47_).getLanguage());
    if (code.isEmpty())
        return std::nullopt;
    return code;
}

std::optional<QString> Locale::localizedString(const QString& identifier) const
{
    const icu::Locale named(identifier.toUtf8().constData());
    // ICU answers an unknown language with its code and says so only through this status.
    UErrorCode status = U_ZERO_ERROR;
    std::array<UChar, 128> language{};
    uloc_getDisplayLanguage(named.getName(), parse(bcp47_).getName(), language.data(),
                            static_cast<int32_t>(language.size()), &status);
    if (U_FAILURE(status) || status == U_USING_DEFAULT_WARNING)
        return std::nullopt;
    icu::UnicodeString name;
    named.getDisplayName(parse(bcp47_), name);
    return QString::fromUtf16(name.getBuffer(), name.length());
}

} // namespace corvandi
