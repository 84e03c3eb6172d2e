#include "system/language_model/chat_answer.h"

#include "base/error.h"
#include "base/json.h"

#include <utility>

namespace corvandi {
namespace {

constexpr QByteArrayView field("data");

} // namespace

void EventStream::feed(const QByteArray& bytes)
{
    for (const char byte : bytes) {
        const bool completesReturn = byte == '\n' && std::exchange(endedWithReturn_, false);
        if (completesReturn)
            continue;
        endedWithReturn_ = byte == '\r';
        if (byte == '\r' || byte == '\n')
            endLine();
        else
            line_ += byte;
    }
}

void EventStream::finish()
{
    endLine();
    endEvent();
}

void EventStream::endLine()
{
    const QByteArray line = std::exchange(line_, {});
    if (line.isEmpty()) {
        endEvent();
        return;
    }
    const qsizetype colon = line.indexOf(':');
    const qsizetype nameEnd = colon < 0 ? line.size() : colon;
    if (QByteArrayView(line).first(nameEnd) != field)
        return;
    QByteArray value = colon < 0 ? QByteArray() : line.mid(colon + 1);
    if (value.startsWith(' '))
        value.remove(0, 1);
    if (std::exchange(hasData_, true))
        data_ += '\n';
    data_ += value;
}

void EventStream::endEvent()
{
    const QByteArray data = std::exchange(data_, {});
    if (std::exchange(hasData_, false))
        sink_(data);
}

namespace {

constexpr QLatin1String opening("<think>");
constexpr QLatin1String closing("</think>");

QStringView trimmedAtStart(QStringView text)
{
    while (!text.isEmpty() && text.front().isSpace())
        text = text.mid(1);
    return text;
}

} // namespace

QString withoutReasoning(const QString& answer)
{
    QStringView text = answer;
    if (!text.contains(opening)) {
        const qsizetype end = text.indexOf(closing);
        return end < 0 ? answer : text.mid(end + closing.size()).toString();
    }
    bool hasReasoning = false;
    while (trimmedAtStart(text).startsWith(opening)) {
        const qsizetype end = text.indexOf(closing);
        if (end < 0)
            return {};
        text = text.mid(end + closing.size());
        hasReasoning = true;
    }
    return hasReasoning ? text.toString() : answer;
}

namespace {

/// The last event of a stream.
constexpr QByteArrayView lastEvent("[DONE]");

QString notUnderstood()
{
    return QStringLiteral("the server's answer is not understood");
}

bool has(const Json& object, const char* key)
{
    return object.contains(key) && !object.at(key).is_null();
}

bool hasText(const Json& object, const char* key)
{
    return has(object, key) && !stringMember(object, key).isEmpty();
}

/// Why an answer that ended for this reason is of no use; nothing when it is.
std::optional<QString> objectionTo(const QString& finishReason)
{
    if (finishReason == QLatin1String("length"))
        return QStringLiteral("the server cut the answer short");
    if (finishReason == QLatin1String("content_filter"))
        return QStringLiteral("the model refused");
    return std::nullopt;
}

} // namespace

bool ChatAnswer::feed(const QByteArray& bytes)
{
    length_ += bytes.size();
    if (!isStream_) {
        document_ += bytes;
        const QByteArray start = document_.trimmed();
        if (start.isEmpty())
            return length_ <= longestDocument;
        isStream_ = !start.startsWith('{');
        if (*isStream_)
            events_.feed(std::exchange(document_, {}));
    } else if (*isStream_) {
        events_.feed(bytes);
    } else {
        document_ += bytes;
    }
    if (length_ > longestStream || events_.waitingBytes() > longestDocument ||
        document_.size() > longestDocument)
        fail(QStringLiteral("the answer is too long"));
    return !isComplete_ && !failure_;
}

LanguageModelAnswer ChatAnswer::finish()
{
    if (isStream_ == true) {
        events_.finish();
        if (!hasEvents_)
            fail(notUnderstood());
    } else if (isStream_ == false) {
        takeDocument(document_, "message");
        // Some servers leave out why it ends: the document itself is whole.
        isComplete_ = true;
    }
    return outcome();
}

LanguageModelAnswer ChatAnswer::outcome() const
{
    if (failure_)
        return *failure_;
    if (!isStream_)
        return LanguageModelFailure{QStringLiteral("the server's answer is empty")};
    if (!isComplete_)
        return LanguageModelFailure{QStringLiteral("the answer broke off")};
    QString text = withoutReasoning(text_);
    const bool hasReasoned = hasReasoned_ || text != text_;
    if (hasReasoned && text.trimmed().isEmpty())
        return LanguageModelFailure{QStringLiteral("the model's answer is reasoning alone")};
    if (text.isEmpty())
        return LanguageModelFailure{QStringLiteral("the model's answer is empty")};
    return text;
}

void ChatAnswer::takeEvent(const QByteArray& data)
{
    hasEvents_ = true;
    if (isComplete_ || failure_)
        return;
    if (data == lastEvent)
        isComplete_ = true;
    else
        takeDocument(data, "delta");
}

void ChatAnswer::takeDocument(const QByteArray& json, const char* part)
{
    try {
        const Json answer = parseJson(json);
        if (answer.is_object() && has(answer, "error")) {
            fail(QStringLiteral("the server reports an error"));
            return;
        }
        const Json& choices = arrayMember(answer, "choices");
        // Some events only count what the answer has cost.
        if (choices.empty())
            return;
        const Json& choice = choices.front();
        if (has(choice, part)) {
            const Json& message = choice.at(part);
            hasReasoned_ =
                hasReasoned_ || hasText(message, "reasoning_content") || hasText(message, "reasoning");
            if (has(message, "content"))
                text_ += stringMember(message, "content");
        }
        if (has(choice, "finish_reason")) {
            isComplete_ = true;
            if (const auto objection = objectionTo(stringMember(choice, "finish_reason")))
                fail(*objection);
        }
    } catch (const Error&) {
        fail(notUnderstood());
    }
}

void ChatAnswer::fail(const QString& description)
{
    if (!failure_)
        failure_ = LanguageModelFailure{description};
}

} // namespace corvandi
