#include "platform/linux/log/linux_system_log.h"

namespace corvandi {
namespace {

/// Log daemons cut datagrams at this size or above; a pipe takes as much (and a line end) at once.
constexpr qsizetype longestLine = 2000;

bool isLineBreak(QChar character)
{
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

/// `text` on a single line: runs of line breaks and control characters become one space.
QString flattened(const QString& text)
{
    QString flat;
    flat.reserve(text.size());
    bool isAfterBreak = false;
    for (const QChar character : text) {
        const bool isBreak = isLineBreak(character);
        if (!isBreak)
            flat += character;
        else if (!isAfterBreak)
            flat += QLatin1Char(' ');
        isAfterBreak = isBreak;
    }
    return flat.trimmed();
}

QByteArray cut(QByteArray utf8)
{
    if (utf8.size() <= longestLine)
        return utf8;
    qsizetype end = longestLine;
    const auto isContinuation = [&](qsizetype at) { return (utf8.at(at) & 0xC0) == 0x80; };
    while (isContinuation(end))
        --end;
    utf8.truncate(end);
    return utf8 + "...";
}

} // namespace

LinuxSystemLog::LinuxSystemLog(int errorOutput, std::string daemonSocket)
    : errorOutput_(errorOutput)
    , daemon_(std::move(daemonSocket))
{
}

void LinuxSystemLog::writeLine(const QString& line)
{
    const QByteArray text = cut(flattened(line).toUtf8());
    const std::lock_guard guard(mutex_);
    daemon_.writeLine(text);
    errorOutput_.writeLine(text);
}

} // namespace corvandi
