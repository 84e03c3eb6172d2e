#include "platform/linux/pocketsphinx/sentence_speller.h"

#include <utility>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

/// Readers pause for 300 to 500 ms within a sentence and longer between two.
constexpr auto sentencePause = 700ms;

QString spellWord(const QString& word)
{
    // Also "i'm", "i'll", "i'd", "i've".
    if (word == QLatin1String("i") || word.startsWith(QLatin1String("i'")))
        return QLatin1Char('I') + word.mid(1);
    return word;
}

QString capitalized(const QString& text)
{
    return text.left(1).toUpper() + text.mid(1);
}

} // namespace

QString SentenceSpeller::add(const QString& words, std::chrono::milliseconds pauseBefore)
{
    pause_ += pauseBefore;
    QStringList spelled;
    for (const QString& word : words.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        spelled << spellWord(word);
    if (spelled.isEmpty())
        return {};
    const auto pause = std::exchange(pause_, 0ms);
    const bool beginsSentence = !hasText_ || pause >= sentencePause;
    const QString text = spelled.join(QLatin1Char(' '));
    const QString lead = separator(pause);
    hasText_ = true;
    return lead + (beginsSentence ? capitalized(text) : text);
}

QString SentenceSpeller::finish()
{
    return std::exchange(hasText_, false) ? QStringLiteral(".") : QString();
}

QString SentenceSpeller::separator(std::chrono::milliseconds pauseBefore) const
{
    if (!hasText_)
        return {};
    return pauseBefore >= sentencePause ? QStringLiteral(". ") : QStringLiteral(" ");
}

} // namespace corvandi
