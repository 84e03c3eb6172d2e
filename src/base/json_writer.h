#pragma once

#include <QByteArray>
#include <QString>
#include <QUuid>

namespace corvandi {

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
