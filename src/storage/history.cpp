#include "storage/history.h"

#include "storage/history_file.h"

#include <algorithm>

namespace corvandi {

History::History(TextFolding folding, std::vector<HistoryEntry> entries)
    : folding_(folding)
    , entries_(std::move(entries))
{
    forms_.reserve(entries_.size());
    for (const HistoryEntry& entry : entries_)
        forms_.push_back({encodedEntry(entry), folding_.folded(entry.text)});
}

std::vector<HistoryEntry> History::containing(const QString& part) const
{
    const QString folded = folding_.folded(part);
    std::vector<HistoryEntry> found;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (TextFolding::contains(forms_[i].folded, folded))
            found.push_back(entries_[i]);
    }
    return found;
}

void History::add(HistoryEntry entry)
{
    forms_.insert(forms_.begin(), {QByteArray(), folding_.folded(entry.text)});
    entries_.insert(entries_.begin(), std::move(entry));
}

void History::limit(std::size_t count)
{
    if (entries_.size() <= count)
        return;
    entries_.resize(count);
    forms_.resize(count);
}

void History::remove(const QUuid& id)
{
    for (std::size_t i = entries_.size(); i-- > 0;) {
        if (entries_[i].id != id)
            continue;
        entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(i));
        forms_.erase(forms_.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

QByteArray History::encode()
{
    std::vector<QByteArray> encoded;
    encoded.reserve(entries_.size());
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (forms_[i].json.isEmpty())
            forms_[i].json = encodedEntry(entries_[i]);
        encoded.push_back(forms_[i].json);
    }
    return encodedHistory(encoded);
}

} // namespace corvandi
