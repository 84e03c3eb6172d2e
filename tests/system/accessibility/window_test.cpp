#include "support/event_loop.h"
#include "system/accessibility/focus_fixture.h"

namespace corvandi::testing {
namespace {

using std::chrono::milliseconds;

class WindowTest : public FocusTest {};

TEST_F(WindowTest, TheAnswerFollowsTheActiveWindow)
{
    const auto text = startQtFields(QStringLiteral("text"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    const auto password = startGtkFields(QStringLiteral("3.0"), QStringLiteral("secret"));
    pressKey(QStringLiteral("Tab"));
    ASSERT_TRUE(becomes(FocusTarget::secure));

    activateWindow(QStringLiteral("text"));
    ASSERT_TRUE(isActive(*text));
    EXPECT_EQ(inspector.currentTarget(), FocusTarget::editable);
    activateWindow(QStringLiteral("secret"));
    ASSERT_TRUE(isActive(*password));
    EXPECT_EQ(inspector.currentTarget(), FocusTarget::secure);
}

TEST_F(WindowTest, AnApplicationThatExposesNothingIsUnknownAlthoughAnotherOneHasAKnownField)
{
    const auto text = startQtFields(QStringLiteral("text"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    const TargetApplication terminal(QStringLiteral("xterm"), {});
    ASSERT_TRUE(isActive(terminal));

    EXPECT_EQ(desktop.focusedElement(), std::nullopt);
    runFor(milliseconds(300));
    EXPECT_EQ(desktop.focusedElement(), std::nullopt);
}

TEST_F(WindowTest, ARefreshEndsWhereNoWindowIsActive)
{
    ASSERT_EQ(desktop.activeProcess(), std::nullopt);
    EXPECT_TRUE(desktop.isRefreshed());
}

TEST_F(WindowTest, AnApplicationKilledWhileItHasTheFocusIsForgotten)
{
    const auto text = startQtFields(QStringLiteral("text"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    const auto password = startGtkFields(QStringLiteral("3.0"), QStringLiteral("secret"));
    pressKey(QStringLiteral("Tab"));
    ASSERT_TRUE(becomes(FocusTarget::secure));

    password->kill();
    activateWindow(QStringLiteral("text"));
    EXPECT_TRUE(becomes(FocusTarget::editable));
}

TEST_F(WindowTest, AMenuThatTakesTheKeyboardForAWhileDoesNotEndTheFocus)
{
    const auto text = startGtkFields(QStringLiteral("3.0"), QStringLiteral("text"));
    ASSERT_TRUE(becomes(FocusTarget::editable));
    // The window manager's menu grabs the keyboard, which the field sees as losing the focus.
    pressKey(QStringLiteral("alt+space"));
    for (int i = 0; i < 20; ++i) {
        runFor(milliseconds(20));
        EXPECT_EQ(inspector.currentTarget(), FocusTarget::editable);
    }
    pressKey(QStringLiteral("Escape"));
}

TEST_F(WindowTest, AFieldThatHadTheFocusBeforeTheTrackingBeganIsFoundWithoutBeingAskedFor)
{
    const auto text = startQtFields(QStringLiteral("text"));
    const UnaskedFocus late(log);
    EXPECT_TRUE(late.becomes(*text, FocusTarget::editable));
}

TEST_F(WindowTest, AWindowThatDoesNotNameItsProcessIsIdentifiedByItsConnection)
{
    const TargetApplication bare(QStringLiteral(BARE_WINDOW), {QStringLiteral("bare")});
    EXPECT_TRUE(isActive(bare));
}

} // namespace
} // namespace corvandi::testing
