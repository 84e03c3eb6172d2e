#pragma once

#include "core/text/regex.h"
#include "core/text/vocab_book.h"

#include <QString>
#include <QStringView>

#include <unicode/brkiter.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvandi {

/// Walks through a text by the characters that a person sees (grapheme clusters). Finds none when ICU's
/// data is missing.
class Graphemes {
public:
    struct Range {
        qsizetype begin = 0;
        qsizetype end = 0;
    };

    explicit Graphemes(const QString& text);

    /// The next character; nothing at the end of the text.
    [[nodiscard]] std::optional<Range> next();

private:
    QString text_;
    icu::UnicodeString readable_;
    std::unique_ptr<icu::BreakIterator> boundaries_;
};

/// A text together with its full case folding, in which two texts that differ only in letter case are
/// equal ("ß" and "SS" both fold to "ss"). A folding may be longer than its character, so places in the
/// folding and in the text correspond only at the bounds of characters. The text is valid UTF-16.
class FoldedText {
public:
    FoldedText() = default;
    explicit FoldedText(const QString& text);

    [[nodiscard]] const QString& text() const { return text_; }
    [[nodiscard]] const std::u16string& folding() const { return folding_; }

    /// Whether a whole word or phrase of the text has its folding from `begin` to before `end`: there are
    /// whole characters there, and no word character stands right before or behind them.
    [[nodiscard]] bool isWhole(std::size_t begin, std::size_t end) const;

    /// How many units of the text have their folding from `begin` to before `end`, both bounds of
    /// characters.
    [[nodiscard]] qsizetype lengthOf(std::size_t begin, std::size_t end) const;

    /// Appends the part of `source` whose folding goes from `begin` to before `end`, both bounds of
    /// characters.
    void append(const FoldedText& source, std::size_t begin, std::size_t end);
    void append(const FoldedText& source) { append(source, 0, source.folding_.size()); }

private:
    static constexpr std::int32_t insideCharacter = -1;

    void appendFolded(qsizetype begin, qsizetype end);

    QString text_;
    std::u16string folding_;
    /// For each unit of the folding, and for its end: where the character begins in the text whose folding
    /// begins here.
    std::vector<std::int32_t> origins_ = {0};
};

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
