#include "harness/word_errors.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

namespace corvandi::harness {

std::vector<std::string> wordsOf(const std::string& text)
{
    std::vector<std::string> words;
    std::string word;
    for (const char character : text + ' ') {
        const auto byte = static_cast<unsigned char>(character);
        // Bytes of characters beyond ASCII belong to words.
        if (std::isalnum(byte) != 0 || byte >= 0x80)
            word += static_cast<char>(std::tolower(byte));
        else if (character != '\'' && !word.empty())
            words.push_back(std::exchange(word, {}));
    }
    return words;
}

size_t wordErrors(const std::string& reference, const std::string& text)
{
    const std::vector<std::string> expected = wordsOf(reference);
    const std::vector<std::string> actual = wordsOf(text);
    std::vector<size_t> row(actual.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 1; i <= expected.size(); ++i) {
        size_t diagonal = std::exchange(row[0], i);
        for (size_t j = 1; j <= actual.size(); ++j) {
            const size_t replaced = diagonal + (expected[i - 1] == actual[j - 1] ? 0U : 1U);
            diagonal = std::exchange(row[j], std::min({replaced, row[j] + 1, row[j - 1] + 1}));
        }
    }
    return row.back();
}

} // namespace corvandi::harness
