#pragma once

#include "base/error.h"

#include <QString>

#include <cstdint>

namespace corvandi {

/// Why speech can't be transcribed. The description is a sentence for the person.
class SpeechError : public Error {
public:
    enum class Kind : uint8_t { localeUnsupported, noAnalyzerFormat, converterUnavailable };

    /// The engine doesn't know the language with this BCP 47 identifier.
    [[nodiscard]] static SpeechError localeUnsupported(const QString& identifier);
    /// The engine can't say in which format it wants its sound.
    [[nodiscard]] static SpeechError noAnalyzerFormat();
    /// There is no way from the microphone's format to the engine's.
    [[nodiscard]] static SpeechError converterUnavailable();

    [[nodiscard]] Kind kind() const { return kind_; }
    /// The language that was wanted; empty but for `localeUnsupported`.
    [[nodiscard]] const QString& localeIdentifier() const { return localeIdentifier_; }

private:
    SpeechError(Kind kind, const QString& description, QString localeIdentifier = {});

    Kind kind_;
    QString localeIdentifier_;
};

} // namespace corvandi
