#include "text/vocab_replacer.h"

#include "text/folded_text.h"
#include "text/phrase.h"
#include "text/valid_text.h"

#include <algorithm>
#include <optional>

namespace corvandi {
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
