#include "accessibility_fixture.h"
#include "support/event_loop.h"
#include "support/recording_log.h"

using namespace corvandi;
using namespace corvandi::testing;
using namespace std::chrono_literals;

TEST(AtSpiAccessibilityClientWithoutABus, IsNotTrustedAndSaysWhyOnce)
{
    ASSERT_FALSE(QDBusConnection::sessionBus().isConnected());
    RecordingLog log;
    Person person;
    AtSpiAccessibilityClient client(log, true, person.way());
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(client.isProcessTrusted(TrustPrompt::silent));
        runFor(10ms);
    }
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_TRUE(log.contains(QStringLiteral("no session bus")));
}

TEST(AtSpiAccessibilityClientWithoutABus, AsksNobodyForWhatCannotBeGranted)
{
    RecordingLog log;
    Person person;
    AtSpiAccessibilityClient client(log, true, person.way());
    EXPECT_FALSE(client.isProcessTrusted(TrustPrompt::askPerson));
    runFor(100ms);
    EXPECT_EQ(person.timesAsked, 0);
}
