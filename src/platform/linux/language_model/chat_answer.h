#pragma once

#include "platform/language_model.h"
#include "platform/linux/language_model/event_stream.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace corvandi {

/// Puts the model's answer together from the bytes of the server's: a stream of events with a piece of
/// text each, or one JSON document with all of it. Reasoning, which comes in fields of its own or before
/// the text, is left out.
///
/// An answer counts only when the server says that it has ended, and not for want of room. What it says in
/// words, be it the model's or its own, never gets into the description of a failure.
class ChatAnswer {
public:
    /// The most bytes that are read. Streams take some 300 for each word, so this is far more than a model
    /// writes while the user waits.
    static constexpr qsizetype longestStream = 4 * 1024 * 1024;
    /// The longest single event or document, which is read at a stroke.
    static constexpr qsizetype longestDocument = 256 * 1024;

    ChatAnswer()
        : events_([this](const QByteArray& data) { takeEvent(data); })
    {
    }
    ChatAnswer(const ChatAnswer&) = delete;
    ChatAnswer& operator=(const ChatAnswer&) = delete;
    ~ChatAnswer() = default;

    /// Takes the next bytes. Returns false when no more are needed: the outcome is known.
    [[nodiscard]] bool feed(const QByteArray& bytes);
    /// The outcome, when this was all that the server has sent.
    [[nodiscard]] LanguageModelAnswer finish();

private:
    void takeEvent(const QByteArray& data);
    void takeDocument(const QByteArray& json, const char* part);
    void fail(const QString& description);
    [[nodiscard]] LanguageModelAnswer outcome() const;

    EventStream events_;
    /// What has come of an answer that is no stream, or not yet known to be one.
    QByteArray document_;
    qsizetype length_ = 0;
    std::optional<bool> isStream_;
    bool hasEvents_ = false;
    QString text_;
    bool isComplete_ = false;
    bool hasReasoned_ = false;
    std::optional<LanguageModelFailure> failure_;
};

} // namespace corvandi
