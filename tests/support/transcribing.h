#pragma once

#include "ports/speech_framework.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <span>
#include <vector>

namespace corvandi::testing {

/// Sound as the speech engine wants it: 16 kHz, mono.
using Samples = std::vector<int16_t>;

struct Recording {
    QString name;
    /// What is said in it, in lower case.
    QString reference;

    /// Reads the sound. Throws when the recordings are not installed.
    [[nodiscard]] Samples load() const;
};

/// Human speech from the package pocketsphinx-testdata.
[[nodiscard]] const std::vector<Recording>& humanRecordings();

enum class Pace { realTime, asFastAsPossible };

struct Transcription {
    /// The final results as they came.
    std::vector<QString> pieces;
    /// All of them, joined.
    QString text;
    /// From the end of the sound to the last result.
    std::chrono::duration<double, std::milli> wait{0};
};

/// Feeds `sound` to an analyzer of `framework`, 43 ms at a time, and runs the event loop until it has
/// finished.
[[nodiscard]] Transcription transcribe(SpeechFramework& framework, std::span<const int16_t> sound, Pace pace);

} // namespace corvandi::testing
