#pragma once

#include "base/locale.h"

#include <QString>

#include <cstdint>

namespace corvandi {

/// Makes texts comparable without regard to letter case, as a language has it: in Turkish and Azeri the
/// dotted and the dotless i are different letters. Accents count, whether a text holds them within its
/// letters or behind them.
class TextFolding {
public:
    explicit TextFolding(const Locale& locale);

    /// The text's form for comparisons.
    [[nodiscard]] QString folded(const QString& text) const;

    /// Whether a text contains another one, both folded alike.
    [[nodiscard]] static bool contains(const QString& foldedText, const QString& foldedPart);

private:
    uint32_t options_;
};

} // namespace corvandi
