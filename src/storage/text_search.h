#pragma once

#include "base/locale.h"

#include <QString>

#include <unicode/unistr.h>

namespace corvandi {

/// Looks for one text in many, without regard to letter case, as a language has it: in Turkish and Azeri
/// the dotted and the dotless i are different letters. Accents count, whether a text holds them within its
/// letters or behind them.
///
/// Thread: one at a time.
class TextSearch {
public:
    TextSearch(const QString& wanted, const Locale& locale);

    [[nodiscard]] bool isIn(const QString& text) const;

private:
    [[nodiscard]] icu::UnicodeString folded(const QString& text) const;

    uint32_t foldOptions_;
    icu::UnicodeString wanted_;
};

} // namespace corvandi
