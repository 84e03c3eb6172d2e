#pragma once

#include "text/icu_strings.h"

#include <QString>

#include <unicode/brkiter.h>

#include <memory>
#include <optional>

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

} // namespace corvandi
