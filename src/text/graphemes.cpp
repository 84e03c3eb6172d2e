#include "text/graphemes.h"

#include <unicode/locid.h>

namespace corvandi {

Graphemes::Graphemes(const QString& text)
    : text_(text)
    , readable_(readableByIcu(text_))
{
    UErrorCode status = U_ZERO_ERROR;
    boundaries_.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_SUCCESS(status))
        boundaries_->setText(readable_);
    else
        boundaries_.reset();
}

std::optional<Graphemes::Range> Graphemes::next()
{
    if (!boundaries_)
        return std::nullopt;
    const qsizetype begin = boundaries_->current();
    const qsizetype end = boundaries_->next();
    if (end == icu::BreakIterator::DONE)
        return std::nullopt;
    return Range{begin, end};
}

} // namespace corvandi
