#pragma once

#include "storage/history_entry.h"

#include <QByteArray>

#include <vector>

namespace corvandi {

/// An entry as the history file holds it: a compact JSON object with the keys "id" (upper-case UUID),
/// "text" and "date" (the number of seconds since 2001-01-01 00:00:00 UTC), in this order.
/// Throws an `Error` when the date is not finite.
[[nodiscard]] QByteArray encodedEntry(const HistoryEntry& entry);

/// The bytes of the history file: a compact JSON array of encoded entries.
[[nodiscard]] QByteArray encodedHistory(const std::vector<QByteArray>& entries);

/// Reads the bytes of such a file. Every key is required, unknown ones are ignored, and UUIDs may be in
/// lower case. Throws an `Error` whose description quotes no text when any entry is not right.
[[nodiscard]] std::vector<HistoryEntry> decodedHistory(const QByteArray& bytes);

} // namespace corvandi
