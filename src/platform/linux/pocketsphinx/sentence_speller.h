#pragma once

#include <QString>
#include <QStringList>

#include <chrono>

namespace corvandi {

/// Spells the recogniser's bare words as sentences: a capital at the start, the word "I", and a full
/// stop where the speaker paused as between sentences and at the end. The pieces that it returns
/// concatenate to the text as they are. One speller spells one dictation.
class SentenceSpeller {
public:
    /// Spells what was said after a pause of the length given. Empty when there are no words.
    [[nodiscard]] QString add(const QString& words, std::chrono::milliseconds pauseBefore);
    /// What ends the text; empty when nothing was said.
    [[nodiscard]] QString finish();

private:
    [[nodiscard]] QString separator(std::chrono::milliseconds pauseBefore) const;

    bool hasText_ = false;
    /// Pauses around noise in which no words were found add up.
    std::chrono::milliseconds pause_{0};
};

} // namespace corvandi
