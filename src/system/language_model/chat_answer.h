#pragma once

#include "ports/language_model.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace corvandi {

/// Takes server-sent events apart, however the network has cut them: lines that end in CR, LF or both,
/// events of one or more "data" lines, an empty line behind each. All other fields are ignored.
class EventStream {
public:
    /// Gets the data of one event.
    using Sink = std::function<void(const QByteArray&)>;

    explicit EventStream(Sink sink)
        : sink_(std::move(sink))
    {
    }

    void feed(const QByteArray& bytes);
    /// The stream has ended: an event that lacks its empty line counts, too.
    void finish();
    /// The bytes that wait for the end of their event.
    [[nodiscard]] qsizetype waitingBytes() const { return line_.size() + data_.size(); }

private:
    void endLine();
    void endEvent();

    Sink sink_;
    QByteArray line_;
    QByteArray data_;
    bool hasData_ = false;
    bool endedWithReturn_ = false;
};

/// The text of an answer without the reasoning that some models put before it: "<think>…</think>",
/// several of them, or one whose opening tag the server has swallowed. Reasoning that never ends leaves
/// nothing.
[[nodiscard]] QString withoutReasoning(const QString& answer);

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
