#pragma once

#include <QString>

namespace corvandi {

/// Cleans the raw transcript of one dictation: fillers and punctuation. Pure functions.
///
/// Thread: any.
namespace PostProcessor {

/// What stays and what goes.
struct Options {
    bool removeDisfluencies = false;
    bool keepPunctuation = true;
};

/// Removes the spoken fillers (um, umm, uh, uhh, erm, hmm, mmm) as whole words in any letter case, each
/// with one comma or full stop right behind it, and tidies the white space. A text that began with a
/// filler begins with a capital letter afterwards.
[[nodiscard]] QString stripDisfluencies(const QString& text);

/// Removes the punctuation that does not stand inside a word or number, and lower-cases everything.
[[nodiscard]] QString stripPunctuation(const QString& text);

/// `stripDisfluencies` and `stripPunctuation`, in this order, as far as they are wanted.
[[nodiscard]] QString process(const QString& text, const Options& options);

} // namespace PostProcessor

} // namespace corvandi
