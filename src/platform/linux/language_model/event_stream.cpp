#include "platform/linux/language_model/event_stream.h"

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

} // namespace corvandi
