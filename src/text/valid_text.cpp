#include "text/valid_text.h"

namespace corvandi {

QString withValidSurrogates(const QString& text)
{
    if (text.isValidUtf16())
        return text;
    QString valid = text;
    for (qsizetype i = 0; i < valid.size(); ++i) {
        if (!valid[i].isSurrogate())
            continue;
        const bool isPair =
            valid[i].isHighSurrogate() && i + 1 < valid.size() && valid[i + 1].isLowSurrogate();
        if (isPair)
            ++i;
        else
            valid[i] = QChar::ReplacementCharacter;
    }
    return valid;
}

} // namespace corvandi
