#include "platform/linux/language_model/reasoning.h"

namespace corvandi {
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

} // namespace corvandi
