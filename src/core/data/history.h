#pragma once

#include "base/date.h"
#include "core/data/text_folding.h"

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <vector>

namespace corvandi {

/// One saved transcript: the final text of a dictation and when it happened.
struct HistoryEntry {
    /// Two entries with the same one are the same entry.
    QUuid id;
    QString text;
    Date date;

    friend bool operator==(const HistoryEntry&, const HistoryEntry&) = default;
};

/// A list of transcripts, newest first, as a plain value.
///
/// Keeps beside each entry what is costly to make of its text: its form in the file and the one that is
/// searched. Copies share both, so that a long history is changed, encoded and searched in a moment.
class History {
public:
    /// Throws an `Error` when an entry's date is not finite.
    explicit History(TextFolding folding, std::vector<HistoryEntry> entries = {});

    [[nodiscard]] const std::vector<HistoryEntry>& entries() const { return entries_; }
    /// The entries whose text contains `part`, in their order.
    [[nodiscard]] std::vector<HistoryEntry> containing(const QString& part) const;

    /// Adds an entry as the newest one.
    void add(HistoryEntry entry);
    /// Drops the oldest entries beyond so many.
    void limit(std::size_t count);
    /// Removes every entry with this identifier.
    void remove(const QUuid& id);

    /// The bytes of the history file. Throws an `Error` when the date of an added entry is not finite.
    [[nodiscard]] QByteArray encode();

private:
    struct Forms {
        /// Empty until the entry is encoded.
        QByteArray json;
        QString folded;
    };

    TextFolding folding_;
    std::vector<HistoryEntry> entries_;
    /// Those of the entry at the same place.
    std::vector<Forms> forms_;
};

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
