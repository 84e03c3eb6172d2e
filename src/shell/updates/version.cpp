#include "shell/updates/version.h"

#include <QRegularExpression>

namespace corvandi {

Version::Version(const QString& text)
    : text_(text)
    , number_(QVersionNumber::fromString(text).normalized())
{
}

std::optional<Version> Version::parse(const QString& text)
{
    // Qt reads as far as it understands the text.
    const QRegularExpression whole(QStringLiteral("\\A[0-9]{1,9}(\\.[0-9]{1,9}){0,7}\\z"));
    return whole.match(text).hasMatch() ? std::optional(Version(text)) : std::nullopt;
}

} // namespace corvandi
