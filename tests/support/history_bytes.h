#pragma once

#include "core/data/history.h"

#include <utility>

namespace corvandi::testing {

/// The bytes of a file with these entries.
[[nodiscard]] inline QByteArray historyBytes(std::vector<HistoryEntry> entries)
{
    const TextFolding folding{Locale(QStringLiteral("en-US"))};
    return History(folding, std::move(entries)).encode();
}

} // namespace corvandi::testing
