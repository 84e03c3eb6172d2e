#include "accessibility_fixture.h"
#include "private_bus.h"
#include "support/event_loop.h"
#include "support/recording_log.h"

#include <QDBusConnectionInterface>

using namespace corvandi;
using namespace corvandi::testing;
using namespace std::chrono_literals;

namespace {

class AccessibilityBusTest : public ::testing::Test {
protected:
    [[nodiscard]] bool isTrusted() { return client.isProcessTrusted(TrustPrompt::silent); }
    bool serviceAppears()
    {
        return waitUntil([&] { return bus.connection().interface()->isServiceRegistered(name); });
    }

    const QString name = QStringLiteral("org.a11y.Bus");
    RecordingLog log;
    Person person;
    PrivateBus bus;
    AtSpiAccessibilityClient client{log, true, person.way(), bus.connection()};
};

} // namespace

TEST_F(AccessibilityBusTest, AMissingServiceIsNotTrustedAndLoggedOnce)
{
    const auto hasLogged = [&] {
        return log.contains(QStringLiteral("the accessibility service does not answer"));
    };
    ASSERT_TRUE(waitUntil(hasLogged));
    for (int i = 0; i < 5; ++i) {
        EXPECT_FALSE(isTrusted());
        runFor(20ms);
    }
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(AccessibilityBusTest, AServiceThatAppearsLaterIsNoticed)
{
    runFor(50ms);
    bus.startAccessibility();
    ASSERT_TRUE(serviceAppears());
    setEnabled(bus.connection(), true);
    EXPECT_TRUE(waitUntil([&] { return isTrusted(); }));
}

TEST_F(AccessibilityBusTest, AServiceThatDiesTakesTrustWithIt)
{
    bus.startAccessibility();
    ASSERT_TRUE(serviceAppears());
    setEnabled(bus.connection(), true);
    ASSERT_TRUE(waitUntil([&] { return isTrusted(); }));
    bus.endAccessibility();
    EXPECT_TRUE(waitUntil([&] { return !isTrusted(); }));
}

TEST_F(AccessibilityBusTest, AGrantThatCannotBeCarriedOutIsLogged)
{
    ASSERT_TRUE(waitUntil([&] { return !log.lines().empty(); }));
    (void)client.isProcessTrusted(TrustPrompt::askPerson);
    ASSERT_TRUE(waitUntil([&] { return person.timesAsked == 1; }));
    person.pending(true);
    EXPECT_TRUE(
        waitUntil([&] { return log.contains(QStringLiteral("accessibility could not be switched on")); }));
}

TEST_F(AccessibilityBusTest, ABusThatDiesTakesTrustWithIt)
{
    bus.startAccessibility();
    ASSERT_TRUE(serviceAppears());
    setEnabled(bus.connection(), true);
    ASSERT_TRUE(waitUntil([&] { return isTrusted(); }));
    bus.end();
    EXPECT_TRUE(waitUntil([&] { return !isTrusted(); }));
}
