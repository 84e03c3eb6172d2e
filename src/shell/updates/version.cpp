#include "shell/updates/version.h"

#include <QStringList>

#include <algorithm>

namespace corvandi {
namespace {

constexpr qsizetype maximumParts = 8;
/// The most that always fit into 32 bits.
constexpr qsizetype maximumDigits = 9;

std::optional<uint32_t> number(const QString& digits)
{
    const auto isDigit = [](QChar character) { return character >= u'0' && character <= u'9'; };
    if (digits.isEmpty() || digits.size() > maximumDigits ||
        !std::all_of(digits.begin(), digits.end(), isDigit))
        return std::nullopt;
    return digits.toUInt();
}

} // namespace

Version::Version(QString text, std::vector<uint32_t> parts)
    : text_(std::move(text))
    , parts_(std::move(parts))
{
    while (!parts_.empty() && parts_.back() == 0)
        parts_.pop_back();
}

std::optional<Version> Version::parse(const QString& text)
{
    const QStringList pieces = text.split(u'.');
    if (pieces.size() > maximumParts)
        return std::nullopt;
    std::vector<uint32_t> parts;
    for (const QString& piece : pieces) {
        const std::optional<uint32_t> part = number(piece);
        if (!part)
            return std::nullopt;
        parts.push_back(*part);
    }
    return Version(text, std::move(parts));
}

} // namespace corvandi
