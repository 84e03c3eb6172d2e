#pragma once

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <nlohmann/json.hpp>

#include <vector>

namespace corvandi {

/// Reading of JSON documents that hold the user's own words. Whatever is not as it should be throws an
/// `Error`, whose description names places and keys but never quotes what the document says.
///
/// Thread: any.
using Json = nlohmann::json;

/// How deep arrays and objects may lie within each other.
inline constexpr int deepestJsonNesting = 512;

/// Reads one JSON document in UTF-8, by the letter: no comments, trailing commas, byte-order mark, NaN,
/// lone surrogates or anything behind its end. Of equal keys in an object the last one counts. Time is
/// linear in the size, whatever the bytes are.
[[nodiscard]] Json parseJson(const QByteArray& bytes);

/// The members of an object; each must be there and have the right type.
[[nodiscard]] QString stringMember(const Json& object, const char* key);
/// Any JSON number.
[[nodiscard]] double numberMember(const Json& object, const char* key);
/// A string with the 36 characters of a UUID, hyphens included, in either letter case.
[[nodiscard]] QUuid uuidMember(const Json& object, const char* key);
[[nodiscard]] const Json& arrayMember(const Json& object, const char* key);

/// What `read` makes of each element of an array, in order.
template<class Record>
[[nodiscard]] std::vector<Record> readEach(const Json& array, Record (*read)(const Json&))
{
    std::vector<Record> records;
    records.reserve(array.size());
    for (const Json& element : array)
        records.push_back(read(element));
    return records;
}

/// Writes one JSON document: compact, members in the order of the calls, UTF-8 in which only what must be
/// escaped is. The calls come in an order that makes sense; it is not checked.
///
/// Thread: any, one at a time.
class JsonWriter {
public:
    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }

    /// Starts a member of an object; its value follows. `name` needs no escaping.
    void key(const char* name);
    /// A lone surrogate becomes U+FFFD.
    void value(QStringView text);
    /// Whole numbers without a fraction or exponent (below 2^53), others in the shortest form that reads
    /// back the same. Throws an `Error` for a number that is not finite: JSON has none.
    void value(double number);
    /// In upper case, with hyphens.
    void value(const QUuid& id);

    template<class T>
    void member(const char* name, const T& content)
    {
        key(name);
        value(content);
    }

    /// What was written so far.
    [[nodiscard]] const QByteArray& json() const { return json_; }

private:
    void begin(char bracket);
    void end(char bracket);
    void separate();

    QByteArray json_;
    bool isFirst_ = true;
};

} // namespace corvandi
