#include "support/event_loop.h"
#include "system/accessibility/focus_fixture.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QFile>

#include <csignal>

namespace corvandi::testing {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// Less than a bus is waited for, with room for what else the machine does.
constexpr milliseconds withoutWaiting{250};

/// The program that starts the accessibility bus for whoever asks for it, and the bus, its only child.
class BusStarter {
public:
    [[nodiscard]] static pid_t process()
    {
        return static_cast<pid_t>(
            QDBusConnection::sessionBus().interface()->servicePid(QStringLiteral("org.a11y.Bus")).value());
    }

    [[nodiscard]] static pid_t busProcess()
    {
        QFile children(QStringLiteral("/proc/%1/task/%1/children").arg(process()));
        return children.open(QFile::ReadOnly) ? children.readAll().simplified().toInt() : 0;
    }

    /// Has applications that start from now on expose themselves; starts the program if it is not there.
    [[nodiscard]] static bool enable()
    {
        // One that is just ending refuses.
        return waitUntil([] { return tryToEnable(); });
    }

private:
    static bool tryToEnable()
    {
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Set"));
        call << QStringLiteral("org.a11y.Status") << QStringLiteral("IsEnabled")
             << QVariant::fromValue(QDBusVariant(true));
        return QDBusConnection::sessionBus().call(call).type() == QDBusMessage::ReplyMessage;
    }
};

/// A process that neither runs nor ends while this object lives.
class Stopped {
public:
    explicit Stopped(pid_t process)
        : process_(process)
    {
        EXPECT_TRUE(process_ > 1 && ::kill(process_, SIGSTOP) == 0);
    }
    ~Stopped() { ::kill(process_, SIGCONT); }

    Stopped(const Stopped&) = delete;
    Stopped& operator=(const Stopped&) = delete;

private:
    pid_t process_;
};

template<class Action>
milliseconds timeOf(Action action)
{
    QElapsedTimer timer;
    timer.start();
    action();
    return milliseconds(timer.elapsed());
}

class BusLossTest : public FocusTest {
protected:
    [[nodiscard]] bool saysThatTheBusIsLost()
    {
        return waitUntil([&] { return log.contains(QStringLiteral("accessibility bus is out of reach")); });
    }

    [[nodiscard]] static bool kill(pid_t process) { return process > 1 && ::kill(process, SIGKILL) == 0; }

    /// Returns when the program that started it has ended, too: what it is told until then is lost.
    [[nodiscard]] static bool killBus()
    {
        const pid_t starter = BusStarter::process();
        return kill(BusStarter::busProcess()) && waitUntil([&] { return BusStarter::process() != starter; });
    }

    [[nodiscard]] static pid_t registryProcess()
    {
        const QDBusMessage call =
            QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                                           QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress"));
        const QString address = QDBusConnection::sessionBus().call(call).arguments().value(0).toString();
        const QString name = QStringLiteral("registry-lookup");
        const auto process = QDBusConnection::connectToBus(address, name)
                                 .interface()
                                 ->servicePid(QStringLiteral("org.a11y.atspi.Registry"));
        QDBusConnection::disconnectFromBus(name);
        return static_cast<pid_t>(process.value());
    }

    void expectTrackingOfNewApplications()
    {
        ASSERT_TRUE(BusStarter::enable());
        const auto password = startQtFields(QStringLiteral("password"));
        pressKey(QStringLiteral("Tab"));
        ASSERT_TRUE(password->hasFocusOn(QStringLiteral("password")));
        EXPECT_TRUE(unasked.becomes(*password, FocusTarget::secure));
        EXPECT_TRUE(becomes(FocusTarget::secure));
    }

    RecordingLog unaskedLog;
    UnaskedFocus unasked{unaskedLog};
};

TEST_F(BusLossTest, WhenTheBusDiesTheFocusIsUnknownAndTheLogSaysSoOnce)
{
    const auto text = startQtFields(QStringLiteral("text"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    ASSERT_TRUE(killBus());

    ASSERT_TRUE(saysThatTheBusIsLost());
    EXPECT_EQ(inspector.currentTarget(), FocusTarget::unknown);
    runFor(seconds(1));
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(BusLossTest, WhenTheBusIsBackTheTrackingGoesOn)
{
    ASSERT_TRUE(BusStarter::enable());
    const auto text = startQtFields(QStringLiteral("text"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    ASSERT_TRUE(killBus());
    ASSERT_TRUE(saysThatTheBusIsLost());

    expectTrackingOfNewApplications();
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(BusLossTest, ANewBusThatReplacesOneThatStillRunsIsFollowed)
{
    ASSERT_TRUE(BusStarter::enable());
    const auto text = startQtFields(QStringLiteral("text"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    const pid_t orphan = BusStarter::busProcess();
    ASSERT_TRUE(kill(BusStarter::process()));

    expectTrackingOfNewApplications();
    EXPECT_TRUE(log.lines().empty());
    EXPECT_TRUE(kill(orphan)) << "the old bus had gone by itself";
}

TEST_F(BusLossTest, AnotherRegistryIsToldToAnnounceTheFocus)
{
    ASSERT_TRUE(BusStarter::enable());
    const auto text = startQtFields(QStringLiteral("text"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    const pid_t former = registryProcess();
    ASSERT_TRUE(kill(former));
    ASSERT_TRUE(waitUntil([&] { return registryProcess() > 0 && registryProcess() != former; }))
        << "nobody started another one";
    expectTrackingOfNewApplications();
}

TEST_F(BusLossTest, ABusThatHangsHoldsUpNeitherReadingNorEnding)
{
    ASSERT_TRUE(BusStarter::enable());
    const auto text = startQtFields(QStringLiteral("text"));
    auto late = std::make_unique<DesktopFocus>(log);
    ASSERT_TRUE(becomes(FocusTarget::editable));
    ASSERT_TRUE(waitUntil([&] { return late->focusedElement().has_value(); }));
    {
        const Stopped bus(BusStarter::busProcess());
        milliseconds longest(0);
        for (int i = 0; i < 100; ++i) {
            longest = std::max(longest, timeOf([&] { (void)late->focusedElement(); }));
            runFor(milliseconds(5));
        }
        EXPECT_LT(longest, withoutWaiting);
        EXPECT_EQ(FocusInspector(*late).currentTarget(), FocusTarget::editable) << "it keeps what it knew";
        EXPECT_LT(timeOf([&] { late.reset(); }), withoutWaiting);
    }
    pressKey(QStringLiteral("Tab"));
    ASSERT_TRUE(text->hasFocusOn(QStringLiteral("password")));
    EXPECT_TRUE(becomes(FocusTarget::secure)) << "what happens when it goes on is followed";
}

TEST_F(BusLossTest, AnApplicationThatIsStartedWhileTheBusHangsIsUnknown)
{
    ASSERT_TRUE(BusStarter::enable());
    const auto text = startQtFields(QStringLiteral("text"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    const Stopped bus(BusStarter::busProcess());
    const TargetApplication bare(QStringLiteral(BARE_WINDOW), {QStringLiteral("bare")});
    ASSERT_TRUE(isActive(bare));
    EXPECT_EQ(inspector.currentTarget(), FocusTarget::unknown);
}

TEST_F(BusLossTest, ABusThatHangsWhenTheTrackingBeginsHoldsUpNothingAndIsUsedWhenItGoesOn)
{
    ASSERT_TRUE(BusStarter::enable());
    const auto text = startQtFields(QStringLiteral("text"));
    auto hung = std::make_unique<Stopped>(BusStarter::busProcess());
    auto early = std::make_unique<DesktopFocus>(log);
    DesktopFocus late(log);
    ASSERT_TRUE(waitUntil([&] { return log.contains(QStringLiteral("it does not answer")); }));
    EXPECT_EQ(late.focusedElement(), std::nullopt);
    EXPECT_LT(timeOf([&] { early.reset(); }), withoutWaiting);
    EXPECT_LT(timeOf([] { EXPECT_GT(BusStarter::process(), 0); }), seconds(1))
        << "other buses wait together with this one";

    hung.reset();
    EXPECT_TRUE(waitUntil([&] { return FocusInspector(late).currentTarget() == FocusTarget::editable; }));
}

} // namespace
} // namespace corvandi::testing
