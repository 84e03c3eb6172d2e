#include "core/text/vocab_replacer.h"

#include "core/text/unicode.h"

#include <QStringView>

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <optional>

namespace corvandi {

Graphemes::Graphemes(const QString& text)
    : text_(text)
    , readable_(readableByIcu(text_))
{
    UErrorCode status = U_ZERO_ERROR;
    boundaries_.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_SUCCESS(status))
        boundaries_->setText(readable_);
    else
        boundaries_.reset();
}

std::optional<Graphemes::Range> Graphemes::next()
{
    if (!boundaries_)
        return std::nullopt;
    const qsizetype begin = boundaries_->current();
    const qsizetype end = boundaries_->next();
    if (end == icu::BreakIterator::DONE)
        return std::nullopt;
    return Range{begin, end};
}

namespace {

/// What "\w" of ICU's regular expressions means.
bool isWordCharacter(UChar32 character)
{
    constexpr UChar32 zeroWidthNonJoiner = 0x200C;
    constexpr UChar32 zeroWidthJoiner = 0x200D;
    constexpr uint32_t markDigitOrConnector = U_GC_M_MASK | U_GC_ND_MASK | U_GC_PC_MASK;
    return u_isUAlphabetic(character) || (U_GET_GC_MASK(character) & markDigitOrConnector) != 0 ||
           character == zeroWidthNonJoiner || character == zeroWidthJoiner;
}

bool isWordCharacterBefore(const QString& text, qsizetype position)
{
    if (position == 0)
        return false;
    UChar32 character = 0;
    U16_PREV(QStringView(text).utf16(), 0, position, character);
    return isWordCharacter(character);
}

bool isWordCharacterAt(const QString& text, qsizetype position)
{
    if (position == text.size())
        return false;
    UChar32 character = 0;
    U16_GET(QStringView(text).utf16(), 0, position, text.size(), character);
    return isWordCharacter(character);
}

} // namespace

FoldedText::FoldedText(const QString& text)
    : text_(text)
{
    origins_.clear();
    const auto capacity = static_cast<std::size_t>(text.size());
    folding_.reserve(capacity);
    origins_.reserve(capacity + 1);
    for (qsizetype begin = 0, end = 0; begin < text_.size(); begin = end) {
        U16_FWD_1(QStringView(text_).utf16(), end, text_.size());
        appendFolded(begin, end);
    }
    origins_.push_back(static_cast<std::int32_t>(text_.size()));
}

void FoldedText::appendFolded(qsizetype begin, qsizetype end)
{
    // The longest folding has three characters.
    std::array<char16_t, 8> folded{};
    UErrorCode status = U_ZERO_ERROR;
    const auto length = static_cast<std::size_t>(
        u_strFoldCase(folded.data(), folded.size(), QStringView(text_).utf16() + begin,
                      static_cast<int32_t>(end - begin), U_FOLD_CASE_DEFAULT, &status));
    folding_.append(folded.data(), length);
    origins_.push_back(static_cast<std::int32_t>(begin));
    origins_.resize(folding_.size(), insideCharacter);
}

bool FoldedText::isWhole(std::size_t begin, std::size_t end) const
{
    const std::int32_t from = origins_[begin];
    const std::int32_t to = origins_[end];
    return from != insideCharacter && to != insideCharacter && !isWordCharacterBefore(text_, from) &&
           !isWordCharacterAt(text_, to);
}

qsizetype FoldedText::lengthOf(std::size_t begin, std::size_t end) const
{
    return origins_[end] - origins_[begin];
}

void FoldedText::append(const FoldedText& source, std::size_t begin, std::size_t end)
{
    const std::int32_t from = source.origins_[begin];
    const auto shift = static_cast<std::int32_t>(text_.size()) - from;
    text_.append(QStringView(source.text_).mid(from, source.origins_[end] - from));
    folding_.append(source.folding_, begin, end - begin);
    for (std::size_t i = begin + 1; i <= end; ++i)
        origins_.push_back(source.origins_[i] == insideCharacter ? insideCharacter
                                                                 : source.origins_[i] + shift);
}

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

namespace {

using Matches = std::vector<Phrase::Match>;

/// Rules that each double the text would fill the memory. This many units are hours of speech.
constexpr qsizetype longestGrownText = 1 << 18;

/// A rule that is made ready when it is first needed.
class CompiledRule {
public:
    explicit CompiledRule(const VocabRule& rule)
        : to_(withValidSurrogates(rule.to))
    {
        if (!rule.from.isEmpty())
            phrase_.emplace(withValidSurrogates(rule.from));
    }

    void applyTo(FoldedText& text);

private:
    [[nodiscard]] bool growsTooLong(const FoldedText& text, const Matches& matches) const;
    [[nodiscard]] FoldedText replaced(const FoldedText& text, const Matches& matches);

    QString to_;
    std::optional<Phrase> phrase_;
    std::optional<FoldedText> replacement_;
};

void CompiledRule::applyTo(FoldedText& text)
{
    if (!phrase_)
        return;
    const Matches matches = phrase_->matchesIn(text);
    if (!matches.empty() && !growsTooLong(text, matches))
        text = replaced(text, matches);
}

bool CompiledRule::growsTooLong(const FoldedText& text, const Matches& matches) const
{
    qsizetype length = text.text().size();
    for (const Phrase::Match& match : matches)
        length += to_.size() - text.lengthOf(match.begin, match.end);
    return length > std::max(longestGrownText, text.text().size());
}

FoldedText CompiledRule::replaced(const FoldedText& text, const Matches& matches)
{
    if (!replacement_)
        replacement_.emplace(to_);
    FoldedText result;
    std::size_t done = 0;
    for (const Phrase::Match& match : matches) {
        result.append(text, done, match.begin);
        result.append(*replacement_);
        done = match.end;
    }
    result.append(text, done, text.folding().size());
    return result;
}

} // namespace

struct VocabReplacer::Compiled {
    explicit Compiled(const std::vector<VocabRule>& source)
        : rules(source)
        , compiledRules(source.begin(), source.end())
    {
    }

    std::vector<VocabRule> rules;
    std::vector<CompiledRule> compiledRules;
};

VocabReplacer::VocabReplacer() = default;
VocabReplacer::~VocabReplacer() = default;

QString VocabReplacer::apply(const std::vector<VocabRule>& rules, const QString& text)
{
    if (!compiled_ || compiled_->rules != rules)
        compiled_ = std::make_unique<Compiled>(rules);
    FoldedText result(withValidSurrogates(text));
    for (CompiledRule& rule : compiled_->compiledRules)
        rule.applyTo(result);
    return result.text();
}

} // namespace corvandi
