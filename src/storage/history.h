#pragma once

#include "storage/history_entry.h"
#include "storage/text_folding.h"

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <vector>

namespace corvandi {

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

} // namespace corvandi
