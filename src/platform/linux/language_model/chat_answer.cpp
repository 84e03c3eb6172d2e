#include "platform/linux/language_model/chat_answer.h"

#include "base/error.h"
#include "base/json_reading.h"
#include "platform/linux/language_model/reasoning.h"

#include <utility>

namespace corvandi {
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
