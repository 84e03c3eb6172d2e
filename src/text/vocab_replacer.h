#pragma once

#include "text/vocab_rule.h"

#include <QString>

#include <memory>
#include <vector>

namespace corvandi {

/// Applies replacement rules to a transcript. Keeps what it has compiled for as long as the rules that it
/// is given stay the same.
///
/// Thread: main thread only.
class VocabReplacer {
public:
    VocabReplacer();
    ~VocabReplacer();
    VocabReplacer(const VocabReplacer&) = delete;
    VocabReplacer& operator=(const VocabReplacer&) = delete;

    /// `text` after all `rules`, each on the output of the one before. A rule replaces every whole word or
    /// phrase that is its `from`, in any letter case, by its `to`, literally; whole means that no letter,
    /// mark, digit or underscore stands right before or behind it. A rule with an empty `from` is skipped,
    /// and so is one that would make the text longer than 262,144 units (and longer than it is). Lone
    /// surrogates count as U+FFFD wherever they stand. Time is linear in the number of rules and in the
    /// length of the text.
    [[nodiscard]] QString apply(const std::vector<VocabRule>& rules, const QString& text);

private:
    struct Compiled;
    std::unique_ptr<Compiled> compiled_;
};

} // namespace corvandi
