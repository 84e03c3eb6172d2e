#pragma once

#include "core/text/vocab_book.h"

#include <QString>
#include <QUuid>

namespace corvandi::testing {

/// A rule with an identifier of its own.
[[nodiscard]] inline VocabRule rule(const char16_t* from, const char16_t* to)
{
    return {QUuid::createUuid(), QStringView(from).toString(), QStringView(to).toString()};
}

} // namespace corvandi::testing
