#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace corvandi {

/// Calls `visit(key, value)` for each assignment in the group of this name of a desktop-style key file
/// (UTF-8 lines, "[group]", "key=value", comments behind "#"), with blanks around both cut off.
template<class Visitor>
void forEachKey(const QByteArray& content, const QByteArray& group, Visitor visit)
{
    bool inGroup = false;
    for (const QByteArray& rawLine : content.split('\n')) {
        const QByteArray line = rawLine.trimmed();
        if (line.startsWith('['))
            inGroup = line == '[' + group + ']';
        const auto separator = line.indexOf('=');
        if (inGroup && separator > 0 && !line.startsWith('#'))
            visit(line.left(separator).trimmed(), QString::fromUtf8(line.mid(separator + 1).trimmed()));
    }
}

/// The items of a list value ("a;b;c;").
[[nodiscard]] inline QStringList listItems(const QString& value)
{
    return value.split(QLatin1Char(';'), Qt::SkipEmptyParts);
}

} // namespace corvandi
