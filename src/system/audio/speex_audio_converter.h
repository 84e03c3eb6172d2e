#pragma once

#include "ports/audio_converter.h"

namespace corvandi {

/// Makes converters to mono: of several channels the one in which somebody speaks is taken
/// (`SpeechChannel`), then resampled, then given in the wanted sample format. There is one for any number of
/// channels, any whole sample rates and both sample formats, but none to more than one channel.
class SpeexAudioConverterFactory : public AudioConverterFactory {
public:
    [[nodiscard]] std::unique_ptr<AudioConverter> create(const AudioFormat& from,
                                                         const AudioFormat& to) override;
};

} // namespace corvandi
