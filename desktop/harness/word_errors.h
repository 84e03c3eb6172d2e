#pragma once

#include <string>
#include <vector>

namespace corvandi::harness {

/// The words of a text in lower case, without punctuation.
[[nodiscard]] std::vector<std::string> wordsOf(const std::string& text);

/// The least number of words to be replaced, inserted or deleted to turn one text into the other.
[[nodiscard]] size_t wordErrors(const std::string& reference, const std::string& text);

} // namespace corvandi::harness
