#pragma once

#include "core/speech/sounds.h"
#include "core/speech/speech_service.h"
#include "support/fake_audio_converter.h"
#include "support/fake_speech_framework.h"
#include "support/recording_log.h"
#include "support/task_outcome.h"
#include "support/virtual_queue.h"

#include <gmock/gmock.h>

#include <optional>

namespace corvandi::testing {

/// A service for American English with an engine and converters that do what the test says.
class SpeechServiceTest : public ::testing::Test {
protected:
    void makeService(const QString& locale = QStringLiteral("en-US"))
    {
        service.emplace(framework, converters, queue, log, Locale(locale));
    }
    SpeechServiceTest() { makeService(); }

    TaskOutcome<> ensureModel() { return TaskOutcome<>(service->ensureModel()); }
    TaskOutcome<> start(const AudioFormat& format = microphoneFormat)
    {
        return TaskOutcome<>(service->start(format));
    }
    TaskOutcome<Transcript> finish() { return TaskOutcome<Transcript>(service->finish()); }
    /// Feeds a buffer of the microphone's that is marked by `tag`.
    void feed(float tag) { service->feed(tagged(tag)); }
    /// The marks of what the latest dictation's engine has read.
    [[nodiscard]] std::vector<float> received() const { return tags(framework.latest().received); }

    VirtualQueue queue;
    RecordingLog log;
    FakeSpeechFramework framework;
    FakeAudioConverterFactory converters;
    std::optional<SpeechService> service;
};

} // namespace corvandi::testing
