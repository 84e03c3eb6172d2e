#pragma once

#include <QString>
#include <QStringView>

#include <unicode/unistr.h>

namespace corvandi {

/// Lets ICU read `text` without copying it. Valid for as long as `text` lives unchanged.
[[nodiscard]] inline icu::UnicodeString readableByIcu(const QString& text)
{
    constexpr UBool notTerminated = false;
    return {notTerminated, QStringView(text).utf16(), static_cast<int32_t>(text.size())};
}

[[nodiscard]] inline QString fromIcu(const icu::UnicodeString& text)
{
    // Not fromUtf16(), which takes a byte order mark away.
    return QStringView(text.getBuffer(), text.length()).toString();
}

} // namespace corvandi
