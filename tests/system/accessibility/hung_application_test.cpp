#include "support/event_loop.h"
#include "system/accessibility/accessibility_bus.h"
#include "system/accessibility/focus_fixture.h"

#include <QElapsedTimer>

namespace corvandi::testing {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

class HungApplicationTest : public FocusTest {
protected:
    /// Reads every 5 ms; the longest that the event loop was held up by it. The process is given, because
    /// the display server is not what is measured.
    milliseconds longestRead(pid_t process, milliseconds time)
    {
        QtMainQueue queue;
        AtSpiFocus focus([process] { return process; }, queue, log);
        qint64 longest = 0;
        QTimer tick;
        QObject::connect(&tick, &QTimer::timeout, &tick, [&] {
            QElapsedTimer read;
            read.start();
            (void)focus.focusedElement();
            longest = std::max(longest, read.elapsed());
        });
        tick.start(milliseconds(5));
        runFor(time);
        return milliseconds(longest);
    }
};

/// Less than an application is waited for, with room for what else the machine does.
constexpr milliseconds withoutWaiting = BusReader::answerLimit / 2;

TEST_F(HungApplicationTest, ReadingDoesNotWaitForAnApplicationThatHangs)
{
    const auto hung = startQtFields(QStringLiteral("hung"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    hung->stop();
    EXPECT_LT(longestRead(hung->process(), seconds(1)), withoutWaiting);
    EXPECT_EQ(inspector.currentTarget(), FocusTarget::editable) << "it keeps the element that it had";
    hung->resume();
}

TEST_F(HungApplicationTest, OtherApplicationsAreTrackedWhileOneHangs)
{
    const auto hung = startQtFields(QStringLiteral("hung"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    hung->stop();
    (void)inspector.currentTarget();

    const auto password = startGtkFields(QStringLiteral("3.0"), QStringLiteral("secret"));
    pressKey(QStringLiteral("Tab"));
    EXPECT_TRUE(becomes(FocusTarget::secure));
    hung->resume();
}

TEST_F(HungApplicationTest, AnApplicationThatAnswersAgainIsLookedAtWithoutBeingAskedFor)
{
    const auto hung = startQtFields(QStringLiteral("hung"));
    const auto other = startQtFields(QStringLiteral("other"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    hung->stop();
    activateWindow(QStringLiteral("hung"));
    ASSERT_TRUE(isActive(*hung));
    // One that knows nothing yet and finds the application hung.
    const UnaskedFocus late(log);
    runFor(milliseconds(500));
    EXPECT_FALSE(late.knows(*hung));

    hung->resume();
    EXPECT_TRUE(late.becomes(*hung, FocusTarget::editable));
}

TEST_F(HungApplicationTest, AnApplicationThatHangsBeforeItGetsTheFocusKeepsTheElementThatItHad)
{
    const auto hung = startQtFields(QStringLiteral("hung"));
    pressKey(QStringLiteral("Tab"));
    ASSERT_TRUE(becomes(FocusTarget::secure));
    const auto other = startQtFields(QStringLiteral("other"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    hung->stop();
    activateWindow(QStringLiteral("hung"));
    ASSERT_TRUE(isActive(*hung));
    EXPECT_EQ(inspector.currentTarget(), FocusTarget::secure);
    runFor(milliseconds(500));
    EXPECT_EQ(inspector.currentTarget(), FocusTarget::secure) << "it has fallen silent meanwhile";
    hung->resume();
}

TEST_F(HungApplicationTest, AnApplicationThatIsAlmostTooBusyToAnswerIsFollowed)
{
    const auto busy = startQtFields(QStringLiteral("busy"), BusReader::answerLimit / 2);
    EXPECT_TRUE(becomes(FocusTarget::editable));
    pressKey(QStringLiteral("Tab"));
    ASSERT_TRUE(busy->hasFocusOn(QStringLiteral("password")));
    EXPECT_TRUE(becomes(FocusTarget::secure));
    EXPECT_LT(longestRead(busy->process(), seconds(1)), withoutWaiting);
}

TEST_F(HungApplicationTest, ARefreshWaitsForTheWordOfABusyApplication)
{
    const auto busy = startQtFields(QStringLiteral("busy"), BusReader::answerLimit / 4);
    ASSERT_TRUE(becomes(FocusTarget::editable));
    for (int i = 0; i < 10; ++i) {
        pressKey(QStringLiteral("Tab"));
        ASSERT_TRUE(busy->hasFocusOn(QStringLiteral("password")));
        ASSERT_TRUE(desktop.isRefreshed());
        EXPECT_EQ(inspector.currentTarget(), FocusTarget::secure);
        pressKey(QStringLiteral("shift+Tab"));
        ASSERT_TRUE(busy->hasFocusOn(QStringLiteral("line")));
        ASSERT_TRUE(desktop.isRefreshed());
        EXPECT_EQ(inspector.currentTarget(), FocusTarget::editable);
    }
}

TEST_F(HungApplicationTest, ARefreshEndsAlthoughTheApplicationHangs)
{
    const auto hung = startQtFields(QStringLiteral("hung"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    hung->stop();
    EXPECT_TRUE(desktop.isRefreshed());
    EXPECT_EQ(inspector.currentTarget(), FocusTarget::editable) << "its last word";
    hung->resume();
}

TEST_F(HungApplicationTest, WhoHasGivenUpARefreshIsToldNothing)
{
    const auto hung = startQtFields(QStringLiteral("hung"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    hung->stop();
    bool isTold = false;
    auto givenUp = desktop.monitor().refresh([&isTold] { isTold = true; });
    givenUp.reset();
    EXPECT_TRUE(desktop.isRefreshed()) << "the one after it";
    EXPECT_FALSE(isTold);
    hung->resume();
}

TEST_F(HungApplicationTest, ManyApplicationsAreFollowedAtOnce)
{
    struct Follower {
        QString title;
        std::unique_ptr<TargetApplication> application;
        FocusTarget target;
    };
    std::vector<Follower> applications;
    for (int i = 0; i < 10; ++i) {
        const bool secret = i % 2 == 1;
        const QString title = QStringLiteral("number %1").arg(i);
        applications.push_back(
            {title, startQtFields(title), secret ? FocusTarget::secure : FocusTarget::editable});
        if (secret)
            pressKey(QStringLiteral("Tab"));
        ASSERT_TRUE(becomes(applications.back().target));
    }
    applications[3].application->stop();
    for (const Follower& each : applications) {
        activateWindow(each.title);
        ASSERT_TRUE(isActive(*each.application));
        EXPECT_EQ(inspector.currentTarget(), each.target) << each.title.toStdString();
    }
    applications[3].application->resume();
}

TEST_F(HungApplicationTest, EndingWaitsOnlyForTheQuestionThatIsOnItsWay)
{
    const auto hung = startQtFields(QStringLiteral("hung"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    hung->stop();
    auto late = std::make_unique<DesktopFocus>(log);
    (void)late->focusedElement();
    QElapsedTimer ending;
    ending.start();
    late.reset();
    EXPECT_LT(ending.elapsed(), 250);
    hung->resume();
}

} // namespace
} // namespace corvandi::testing
