// Any text, also broken UTF-16, and any rules through everything that works on texts. The rules must give
// what regular expressions give.

#include "expect.h"

#include "core/text/difficult_texts.h"
#include "support/plain_rules.h"

#include "core/text/post_processor.h"
#include "core/text/unicode.h"
#include "core/text/vocab_replacer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace {

using namespace corvandi;
using fuzz::expect;

/// Makes texts of the bytes of an input; of none, empty ones.
class Input {
public:
    explicit Input(std::span<const std::uint8_t> bytes)
        : bytes_(bytes)
    {
    }

    std::uint8_t byte()
    {
        if (bytes_.empty())
            return 0;
        const std::uint8_t first = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return first;
    }

    QChar unit()
    {
        const std::uint8_t cell = byte();
        return QChar(cell, byte());
    }

    /// Of up to so many pieces, each a difficult one or any unit.
    QString text(std::size_t pieces)
    {
        QString result;
        for (std::size_t count = byte() % (pieces + 1); count > 0 && !bytes_.empty(); --count) {
            const std::uint8_t piece = byte();
            if (piece < testing::difficultPieces.size())
                result.append(QStringView(testing::difficultPieces[piece]));
            else
                result.append(unit());
        }
        return result;
    }

    std::vector<VocabRule> rules()
    {
        std::vector<VocabRule> result(byte() % 5);
        for (VocabRule& rule : result) {
            rule.from = text(4);
            rule.to = text(4);
        }
        return result;
    }

private:
    std::span<const std::uint8_t> bytes_;
};

void tryRules(const std::vector<VocabRule>& rules, const QString& text)
{
    VocabReplacer replacer;
    const QString result = replacer.apply(rules, text);
    expect(result.isValidUtf16(), "the rules' output is valid");
    expect(result == replacer.apply(rules, text), "compiled rules give the same again");

    std::vector<VocabRule> validRules = rules;
    for (VocabRule& rule : validRules) {
        rule.from = withValidSurrogates(rule.from);
        rule.to = withValidSurrogates(rule.to);
    }
    expect(result == testing::appliedPlainly(validRules, withValidSurrogates(text)),
           "the rules give what regular expressions give");
}

void tryTrimming(const QString& text)
{
    const QString trimmed = trimmedOfWhitespaceAndNewlines(text);
    expect(text.contains(trimmed), "trimming keeps the middle");
    expect(trimmedOfWhitespaceAndNewlines(trimmed) == trimmed, "trimming again changes nothing");
    expect(trimmedOfWhitespaceAndNewlines(trimmedOfSpacesAndTabs(text)) == trimmed, "spaces are white space");
    expect(characterCount(text) <= text.size(), "a character has a unit at least");
}

void tryPostProcessor(const QString& text)
{
    const QString fluent = PostProcessor::stripDisfluencies(text);
    expect(fluent.isValidUtf16(), "a text without fillers is valid");
    expect(!fluent.contains(QStringLiteral("  ")), "white space has collapsed");
    expect(trimmedOfWhitespaceAndNewlines(fluent) == fluent, "white space at the ends has gone");
    const QString bare = PostProcessor::stripPunctuation(text);
    expect(bare.isValidUtf16(), "a text without punctuation is valid");
    const QString both = PostProcessor::process(text, {.removeDisfluencies = true, .keepPunctuation = false});
    expect(both == PostProcessor::stripPunctuation(fluent), "the steps follow each other");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input({data, size});
    const std::vector<VocabRule> rules = input.rules();
    const QString text = input.text(40);
    const QString valid = withValidSurrogates(text);
    expect(valid.isValidUtf16(), "the mended text is valid");
    expect(valid.size() == text.size(), "each lone surrogate has one replacement");
    tryRules(rules, text);
    tryTrimming(text);
    tryPostProcessor(valid);
    (void)PostProcessor::process(text, {.removeDisfluencies = true, .keepPunctuation = false});
    return 0;
}
