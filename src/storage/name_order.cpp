#include "storage/name_order.h"

#include "text/icu_strings.h"

namespace corvandi {
namespace {

std::unique_ptr<icu::Collator> collatorFor(const Locale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    const QByteArray tag = locale.bcp47().toUtf8();
    const auto named =
        icu::Locale::forLanguageTag({tag.constData(), static_cast<int32_t>(tag.size())}, status);
    status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(named, status));
    if (U_FAILURE(status))
        return nullptr;
    // Letters and accents; case would be the third level.
    collator->setStrength(icu::Collator::SECONDARY);
    return collator;
}

} // namespace

NameOrder::NameOrder(const Locale& locale)
    : collator_(collatorFor(locale))
{
}

bool NameOrder::isBefore(const QString& name, const QString& other) const
{
    if (!collator_)
        return name.compare(other, Qt::CaseInsensitive) < 0;
    UErrorCode status = U_ZERO_ERROR;
    return collator_->compare(readableByIcu(name), readableByIcu(other), status) == UCOL_LESS;
}

} // namespace corvandi
