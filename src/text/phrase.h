#pragma once

#include "text/folded_text.h"

#include <cstddef>
#include <string>
#include <vector>

namespace corvandi {

/// A word or phrase to look for in any letter case. It finds what ICU's regular expression
/// "(?<!\w)" + phrase + "(?!\w)" finds when letter case is ignored, in a time that grows with the length of
/// the text alone, however often parts of the phrase repeat in it.
class Phrase {
public:
    /// Bounds in the folding of a text.
    struct Match {
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    /// `phrase` is valid UTF-16 and not empty.
    explicit Phrase(const QString& phrase);

    /// The matches from the start of the text on; none overlaps another.
    [[nodiscard]] std::vector<Match> matchesIn(const FoldedText& text) const;

private:
    [[nodiscard]] std::size_t extended(std::size_t matched, char16_t unit) const;

    std::u16string folding_;
    /// For each prefix of the folding: the length of the longest shorter prefix that it ends with (the
    /// search by Knuth, Morris and Pratt).
    std::vector<std::size_t> borders_;
};

} // namespace corvandi
