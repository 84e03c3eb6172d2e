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

QByteArray encodedHistory(const std::vector<HistoryEntry>& history)
{
    JsonWriter writer;
    writer.beginArray();
    for (const HistoryEntry& entry : history) {
        writer.beginObject();
        writer.member("id", entry.id);
        writer.member("text", entry.text);
        writer.member("date", entry.date.secondsSinceReference);
        writer.endObject();
    }
    writer.endArray();
    return writer.json();
}

std::vector<HistoryEntry> decodedHistory(const QByteArray& bytes)
{
    const Json document = parseJson(bytes);
    if (!document.is_array())
        throw Error(QStringLiteral("the history is no array"));
    return readEach(document, readEntry);
}

} // namespace corvandi
