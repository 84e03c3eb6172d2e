#pragma once

#include "core/text/vocab_book.h"

#include <QString>

#include <vector>

namespace corvandi::testing {

/// What the rules make of a text when each of them is one of ICU's regular expressions, slowly: the
/// measure of what the fast way must give. All texts are valid UTF-16; no rule makes the text grow much.
[[nodiscard]] QString appliedPlainly(const std::vector<VocabRule>& rules, const QString& text);

} // namespace corvandi::testing
