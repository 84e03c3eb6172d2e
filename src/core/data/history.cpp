#include "core/data/history.h"

#include "base/error.h"
#include "base/json.h"

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

namespace {

HistoryEntry readEntry(const Json& object)
{
    return {uuidMember(object, "id"), stringMember(object, "text"), {numberMember(object, "date")}};
}

} // namespace

QByteArray encodedEntry(const HistoryEntry& entry)
{
    JsonWriter writer;
    writer.beginObject();
    writer.member("id", entry.id);
    writer.member("text", entry.text);
    writer.member("date", entry.date.secondsSinceReference);
    writer.endObject();
    return writer.json();
}

QByteArray encodedHistory(const std::vector<QByteArray>& entries)
{
    qsizetype size = 2;
    for (const QByteArray& entry : entries)
        size += entry.size() + 1;
    QByteArray json;
    json.reserve(size);
    json.append('[');
    for (const QByteArray& entry : entries)
        json.append(entry).append(',');
    if (!entries.empty())
        json.chop(1);
    return json.append(']');
}

std::vector<HistoryEntry> decodedHistory(const QByteArray& bytes)
{
    const Json document = parseJson(bytes);
    if (!document.is_array())
        throw Error(QStringLiteral("the history is no array"));
    return readEach(document, readEntry);
}

} // namespace corvandi
