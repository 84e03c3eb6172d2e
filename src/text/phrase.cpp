#include "text/phrase.h"

#include <QStringView>

namespace corvandi {
namespace {

/// Qt looks at several units at once.
std::size_t positionOf(char16_t unit, const std::u16string& units, std::size_t from)
{
    const qsizetype found = QStringView(units).indexOf(QChar(unit), static_cast<qsizetype>(from));
    return found < 0 ? units.size() : static_cast<std::size_t>(found);
}

} // namespace

Phrase::Phrase(const QString& phrase)
    : folding_(FoldedText(phrase).folding())
    , borders_(folding_.size() + 1)
{
    for (std::size_t i = 1; i < folding_.size(); ++i)
        borders_[i + 1] = extended(borders_[i], folding_[i]);
}

/// How much of the phrase the text ends with after `unit`, if before it ended with `matched` units of it.
std::size_t Phrase::extended(std::size_t matched, char16_t unit) const
{
    while (matched > 0 && folding_[matched] != unit)
        matched = borders_[matched];
    return folding_[matched] == unit ? matched + 1 : 0;
}

std::vector<Phrase::Match> Phrase::matchesIn(const FoldedText& text) const
{
    std::vector<Match> matches;
    const std::u16string& units = text.folding();
    std::size_t matched = 0;
    const auto next = [&](std::size_t i) { return matched > 0 ? i : positionOf(folding_.front(), units, i); };
    for (std::size_t i = next(0); i < units.size(); i = next(i + 1)) {
        matched = extended(matched, units[i]);
        if (matched < folding_.size())
            continue;
        const Match match{i + 1 - matched, i + 1};
        const bool isWhole = text.isWhole(match.begin, match.end);
        if (isWhole)
            matches.push_back(match);
        matched = isWhole ? 0 : borders_[matched];
    }
    return matches;
}

} // namespace corvandi
