#pragma once

#include <QByteArray>

#include <functional>

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

} // namespace corvandi
