#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <cstddef>
#include <random>

namespace corvandi::testing {

/// Pieces of which texts are made that are hard on letter case, on the bounds of words and characters, on
/// regular expressions, and on replacement templates. Some are halves of surrogate pairs.
inline constexpr std::array<const char16_t*, 86> difficultPieces = {
    // Ordinary words and what stands between them.
    u"a", u"b", u"ok", u"OK", u"um", u"Uh", u" ", u" ", u"  ", u"-", u"_", u".", u",", u"!", u"'", u"’", u"7",
    u"\n", u"\t", u"\u00a0", u"\u3000", u"\u2028", u"\u0085",
    // Syntax of patterns and templates.
    u"$1", u"$", u"\\", u"\\E", u"\\Q", u"(", u"[", u"*", u"+", u"?", u"#", u"|", u"{2}", u"^", u"\\w",
    // Letters whose other case has another length, or is shared.
    u"ß", u"ẞ", u"ss", u"SS", u"s", u"S", u"ſ", u"i", u"I", u"İ", u"ı", u"i\u0307", u"k", u"\u212a", u"Å",
    u"\u212b", u"ﬀ", u"ﬃ", u"ff", u"f", u"ﬅ", u"st", u"σ", u"ς", u"Σ", u"ΐ", u"ι\u0308\u0301", u"ᾈ", u"ἀι",
    u"\u0345", u"ŉ", u"ʼn", u"ǅ",
    // Marks, joiners, pairs, emoji, and what runs from right to left.
    u"\u0301", u"\u200d", u"\u200c", u"\u00ad", u"𐐀", u"𐐨", u"😀", u"👩\u200d🚀", u"🇩🇪", u"שלום", u"مرحبا",
    u"\ufeff", u"\ufffd",
    // Halves of pairs.
    u"\xd83d", u"\xde00"};

/// Makes the same texts every time.
class DifficultTexts {
public:
    explicit DifficultTexts(unsigned seed)
        : random_(seed)
    {
    }

    /// A text of up to so many pieces.
    [[nodiscard]] QString next(std::size_t pieces)
    {
        QString text;
        for (std::size_t count = below(pieces + 1); count > 0; --count)
            text.append(QStringView(difficultPieces[below(difficultPieces.size())]));
        return text;
    }
    [[nodiscard]] std::size_t below(std::size_t bound) { return random_() % bound; }

private:
    std::mt19937 random_;
};

} // namespace corvandi::testing
