#include "speech/speech_service.h"

#include "speech/sounds.h"
#include "support/fake_audio_converter.h"
#include "support/fake_speech_framework.h"
#include "support/recording_log.h"
#include "support/task_outcome.h"
#include "support/virtual_queue.h"

#include <gmock/gmock.h>

namespace corvandi::testing {
namespace {

using ::testing::ElementsAre;

TEST(SpeechService, FeedsEarlyAndLaterBuffersInOrderAndReturnsTheFinalTexts)
{
    VirtualQueue queue;
    RecordingLog log;
    FakeSpeechFramework framework;
    FakeAudioConverters converters;
    SpeechService service(framework, converters, queue, log, Locale(QStringLiteral("en-US")));

    service.feed(tagged(1));
    EXPECT_TRUE(TaskOutcome<>(service.start(microphoneFormat)).hasSucceeded());
    service.feed(tagged(2));
    framework.pushFinal(QStringLiteral("Hello"));
    framework.pushFinal(QStringLiteral(" world"));
    const TaskOutcome<Transcript> outcome(service.finish());
    ASSERT_TRUE(outcome.hasSucceeded());
    EXPECT_EQ(outcome.value().text, QStringLiteral("Hello world"));
    EXPECT_FALSE(outcome.value().failed);
    EXPECT_THAT(tags(framework.latest().received), ElementsAre(1, 2));
}

} // namespace
} // namespace corvandi::testing
