// The frontmost application on a display on which nobody manages windows.

#include "session/x11/windows/x11_workspace.h"

#include "session/x11/xcb_connection.h"
#include "support/event_loop.h"
#include "system/process/qt_main_queue.h"

#include <gtest/gtest.h>

#include <QProcess>

using namespace corvandi;
using corvandi::testing::waitUntil;

namespace {

class WithoutWindowManagerTest : public ::testing::Test {
protected:
    WithoutWindowManagerTest()
    {
        terminal.start(QStringLiteral("xterm"),
                       {QStringLiteral("-geometry"), QStringLiteral("40x10+100+100")});
        EXPECT_TRUE(waitUntil([this] { return shownWindow() != XCB_WINDOW_NONE; }));
    }
    ~WithoutWindowManagerTest() override
    {
        terminal.kill();
        terminal.waitForFinished();
    }

    /// The window of the only program here.
    [[nodiscard]] xcb_window_t shownWindow() const
    {
        const auto tree = x.reply(xcb_query_tree_reply, xcb_query_tree(x.get(), x.root()));
        const xcb_window_t* windows = xcb_query_tree_children(tree.get());
        for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
            const auto attributes =
                x.reply(xcb_get_window_attributes_reply, xcb_get_window_attributes(x.get(), windows[i]));
            if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE)
                return windows[i];
        }
        return XCB_WINDOW_NONE;
    }
    void giveFocusTo(xcb_window_t window) const
    {
        xcb_set_input_focus(x.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
        x.sync();
    }
    void movePointerTo(int16_t left, int16_t top) const
    {
        xcb_warp_pointer(x.get(), XCB_WINDOW_NONE, x.root(), 0, 0, 0, 0, left, top);
        x.sync();
    }

    const XcbConnection x;
    QtMainQueue queue;
    X11Workspace workspace{queue};
    QProcess terminal;
    const QString terminalId = QStringLiteral("debian-xterm");
};

} // namespace

TEST_F(WithoutWindowManagerTest, TheApplicationThatHasTheFocusIsFrontmost)
{
    giveFocusTo(shownWindow());
    movePointerTo(0, 0);
    EXPECT_TRUE(waitUntil([this] { return workspace.frontmostApplication() == terminalId; }));
    EXPECT_EQ(workspace.frontmostProcess(), terminal.processId());
}

TEST_F(WithoutWindowManagerTest, WhereTheFocusFollowsThePointerItIsTheOneUnderThePointer)
{
    giveFocusTo(XCB_INPUT_FOCUS_POINTER_ROOT);
    movePointerTo(120, 120);
    EXPECT_TRUE(waitUntil([this] { return workspace.frontmostApplication() == terminalId; }));
    movePointerTo(0, 0);
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
}

TEST_F(WithoutWindowManagerTest, WithoutAnyFocusThereIsNone)
{
    movePointerTo(120, 120);
    giveFocusTo(XCB_INPUT_FOCUS_NONE);
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
}
