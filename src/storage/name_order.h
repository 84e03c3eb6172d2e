#pragma once

#include "base/locale.h"

#include <QString>

#include <unicode/coll.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace corvandi {

/// The order of names in a language, without regard to letter case. Accents count.
class NameOrder {
public:
    explicit NameOrder(const Locale& locale);

    [[nodiscard]] bool isBefore(const QString& name, const QString& other) const;

private:
    /// Null when the system's collation data are missing; code points decide then.
    std::unique_ptr<icu::Collator> collator_;
};

/// Sorts things that have a `name`; those whose names compare equal keep their order.
template<class Named>
void sortByName(std::vector<Named>& things, const NameOrder& order)
{
    std::stable_sort(things.begin(), things.end(), [&order](const Named& thing, const Named& other) {
        return order.isBefore(thing.name, other.name);
    });
}

} // namespace corvandi
