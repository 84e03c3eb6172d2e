// How long the replacement rules of the vocabulary take on a transcript, by the number of rules and of
// words. About every second rule is for a word that the transcripts may contain, one word in a hundred is
// such a word. Counts processor time, so that what else the machine does changes nothing.

#include "support/plain_rules.h"

#include "core/text/vocab_replacer.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace corvandi;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int runs = 9;
/// What a dictation can bear before its text appears.
constexpr Milliseconds limit{20};
constexpr int rulesUnderLimit = 1000;
constexpr int wordsUnderLimit = 500;

/// Makes the same words on every machine.
class Words {
public:
    /// One of the words that people use all the time.
    QString common() { return word(commonWords_[below(commonWords_.size())]); }
    /// One of `count` words that a user could have a rule for.
    QString rare(int count)
    {
        std::minstd_rand letters(static_cast<unsigned>(below(static_cast<std::size_t>(count))) + 1);
        QString made;
        const std::size_t length = 5 + letters() % 5;
        for (std::size_t i = 0; i < length; ++i)
            made.append(QLatin1Char(static_cast<char>('a' + letters() % 26)));
        return made;
    }
    bool oneIn(std::size_t count) { return below(count) == 0; }

private:
    static QString word(const char* text) { return QLatin1String(text); }
    std::size_t below(std::size_t count) { return random_() % count; }

    static constexpr std::array commonWords_ = {"the",  "of",   "and",   "to",    "in",   "that",  "is",
                                                "was",  "for",  "with",  "as",    "have", "which", "meeting",
                                                "they", "from", "send",  "about", "it",   "would", "tomorrow",
                                                "this", "what", "there", "we",    "when", "your",  "people"};
    std::mt19937 random_{20240501};
};

std::vector<VocabRule> makeRules(int count)
{
    Words words;
    std::vector<VocabRule> rules;
    for (int i = 0; i < count; ++i) {
        const QString from =
            words.oneIn(2) ? words.rare(count) : words.rare(count) + QLatin1Char(' ') + words.common();
        rules.push_back({QUuid(), from, from.toUpper()});
    }
    return rules;
}

QString makeTranscript(int words, int rules)
{
    Words source;
    QStringList list;
    for (int i = 0; i < words; ++i)
        list.append(source.oneIn(100) ? source.rare(rules) : source.common());
    return list.join(QLatin1Char(' '));
}

template<class Work>
Milliseconds median(Work work)
{
    std::vector<Milliseconds> times;
    for (int run = 0; run < runs; ++run) {
        const std::clock_t start = std::clock();
        work();
        times.emplace_back(1e3 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    std::ranges::sort(times);
    return times[times.size() / 2];
}

struct Measured {
    Milliseconds first;
    Milliseconds again;
};

Measured measure(const std::vector<VocabRule>& rules, const QString& transcript)
{
    VocabReplacer kept;
    return {median([&] { (void)VocabReplacer().apply(rules, transcript); }),
            median([&] { (void)kept.apply(rules, transcript); })};
}

Measured measure(int ruleCount, int wordCount)
{
    return measure(makeRules(ruleCount), makeTranscript(wordCount, ruleCount));
}

/// As many rules as the transcript has different words, one for each of them.
Measured measureMatching(int count)
{
    QStringList words;
    std::vector<VocabRule> rules;
    for (int i = 0; i < count; ++i) {
        words.append(QStringLiteral("word%1").arg(i));
        rules.push_back({QUuid(), words.last(), words.last() + QLatin1Char('s')});
    }
    return measure(rules, words.join(QLatin1Char(' ')));
}

Milliseconds measureRegularExpressions(int ruleCount, int wordCount)
{
    const std::vector<VocabRule> rules = makeRules(ruleCount);
    const QString transcript = makeTranscript(wordCount, ruleCount);
    return median([&] { (void)testing::appliedPlainly(rules, transcript); });
}

void print(int rules, int words, const Measured& measured)
{
    std::printf("%7d %7d %14.3f %14.3f\n", rules, words, measured.first.count(), measured.again.count());
}

} // namespace

int main()
{
    std::printf("median of %d runs, in milliseconds of processor time\n", runs);
    std::printf("%7s %7s %14s %14s\n", "rules", "words", "rules are new", "rules are kept");
    for (const int rules : {10, 100, 1000, 10000}) {
        for (const int words : {100, 1000, 10000})
            print(rules, words, measure(rules, words));
    }
    const Measured usual = measure(rulesUnderLimit, wordsUnderLimit);
    print(rulesUnderLimit, wordsUnderLimit, usual);
    const Measured matching = measureMatching(wordsUnderLimit);
    print(wordsUnderLimit, wordsUnderLimit, matching);
    std::printf("In the last line every rule changes a word of its own.\n");
    std::printf("%d rules on %d words as regular expressions: %.0f ms\n", rulesUnderLimit, wordsUnderLimit,
                measureRegularExpressions(rulesUnderLimit, wordsUnderLimit).count());
    const bool isFast = std::max(usual.first, matching.first) <= limit;
    std::printf("%d rules on %d words: limit %.0f ms, %s\n", rulesUnderLimit, wordsUnderLimit, limit.count(),
                isFast ? "kept" : "exceeded");
    return isFast ? 0 : 1;
}
