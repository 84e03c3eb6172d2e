#include "text/vocab_book.h"

#include "base/error.h"
#include "base/json_reading.h"
#include "base/json_writer.h"

namespace corvandi {
namespace {

VocabRule readRule(const Json& object)
{
    return {uuidMember(object, "id"), stringMember(object, "from"), stringMember(object, "to")};
}

AppVocab readApp(const Json& object)
{
    return {stringMember(object, "bundleID"), stringMember(object, "name"),
            readEach(arrayMember(object, "rules"), readRule)};
}

VocabBook readBook(const Json& object)
{
    return {readEach(arrayMember(object, "global"), readRule),
            readEach(arrayMember(object, "apps"), readApp)};
}

void write(JsonWriter& writer, const std::vector<VocabRule>& rules)
{
    writer.beginArray();
    for (const VocabRule& rule : rules) {
        writer.beginObject();
        writer.member("id", rule.id);
        writer.member("from", rule.from);
        writer.member("to", rule.to);
        writer.endObject();
    }
    writer.endArray();
}

void write(JsonWriter& writer, const AppVocab& app)
{
    writer.beginObject();
    writer.member("bundleID", app.bundleID);
    writer.member("name", app.name);
    writer.key("rules");
    write(writer, app.rules);
    writer.endObject();
}

} // namespace

std::optional<VocabBook::Decoded> VocabBook::decoded(const QByteArray& bytes)
{
    try {
        const Json document = parseJson(bytes);
        if (document.is_array())
            return Decoded{{readEach(document, readRule), {}}, true};
        return Decoded{readBook(document), false};
    } catch (const Error&) {
        return std::nullopt;
    }
}

QByteArray VocabBook::encoded() const
{
    JsonWriter writer;
    writer.beginObject();
    writer.key("global");
    write(writer, global);
    writer.key("apps");
    writer.beginArray();
    for (const AppVocab& app : apps)
        write(writer, app);
    writer.endArray();
    writer.endObject();
    return writer.json();
}

} // namespace corvandi
