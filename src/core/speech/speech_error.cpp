#include "core/speech/speech_error.h"

#include "base/locale.h"

#include <QCoreApplication>

#include <utility>

namespace corvandi {
namespace {

QString translated(const char* sentence)
{
    return QCoreApplication::translate("SpeechError", sentence);
}

QString languageName(const QString& identifier)
{
    QString withUnderscores = identifier;
    withUnderscores.replace(QLatin1Char('-'), QLatin1Char('_'));
    return Locale::current().localizedString(withUnderscores).value_or(identifier);
}

} // namespace

SpeechError::SpeechError(Kind kind, const QString& description, QString localeIdentifier)
    : Error(description)
    , kind_(kind)
    , localeIdentifier_(std::move(localeIdentifier))
{
}

SpeechError SpeechError::localeUnsupported(const QString& identifier)
{
    const char* sentence = QT_TRANSLATE_NOOP("SpeechError", "Dictation isn't available for %1 yet.");
    return {Kind::localeUnsupported, translated(sentence).arg(languageName(identifier)), identifier};
}

SpeechError SpeechError::noAnalyzerFormat()
{
    const char* sentence = QT_TRANSLATE_NOOP("SpeechError", "No compatible audio format for transcription.");
    return {Kind::noAnalyzerFormat, translated(sentence)};
}

SpeechError SpeechError::converterUnavailable()
{
    const char* sentence =
        QT_TRANSLATE_NOOP("SpeechError", "Can't convert microphone audio for transcription.");
    return {Kind::converterUnavailable, translated(sentence)};
}

} // namespace corvandi
