#include "storage/history_file.h"

#include "base/error.h"
#include "base/json_reading.h"
#include "base/json_writer.h"

namespace corvandi {
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
