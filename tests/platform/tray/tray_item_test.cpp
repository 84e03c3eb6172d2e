#include "exported_item.h"
#include "support/event_loop.h"
#include "tray_peer_process.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

const std::vector<std::string> inactiveMenu{
    "Hotkey inactive. Grant Accessibility to enable.",
    "[Open Accessibility Settings…]",
    "---",
    "Check for Updates…",
    "[Settings…] Control+,",
    "[Quit Corvandi] Control+Q",
};
const std::vector<std::string> activeMenu{
    "Hold ⌥Space to dictate",    "---", "Check for Updates…", "[Settings…] Control+,",
    "[Quit Corvandi] Control+Q",
};

/// A desktop with a panel whose tray shows items from the session bus.
class TrayItem : public ::testing::Test {
protected:
    ~TrayItem() override { desktop({QStringLiteral("restart"), QStringLiteral("panel")}); }

    static ExportedItem shownItem()
    {
        if (!waitUntil([] { return shownItems().size() == 1; }))
            throw std::runtime_error("the tray does not show the icon");
        return ExportedItem(shownItems().front());
    }
    static QString visibleMenus()
    {
        QProcess search;
        search.start(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                                 QStringLiteral("--class"), QStringLiteral("Corvandi")});
        search.waitForFinished();
        return QString::fromUtf8(search.readAll());
    }
};

TEST_F(TrayItem, IsShownUnderTheProgramsName)
{
    const TrayPeer peer;
    const ExportedItem item = shownItem();
    EXPECT_EQ(item.property(QStringLiteral("Title")), QStringLiteral("Corvandi"));
    EXPECT_EQ(item.property(QStringLiteral("Id")), QStringLiteral("Corvandi"));
    EXPECT_EQ(item.property(QStringLiteral("Status")), QStringLiteral("Active"));
    EXPECT_THAT(peer.output(), Not(HasSubstr("tray")));
    takeScreenshot(QStringLiteral("tray-item.png"));
}

TEST_F(TrayItem, HandsItsMenuToTheTray)
{
    const TrayPeer peer;
    EXPECT_EQ(shownItem().menu(), inactiveMenu);
}

} // namespace
} // namespace corvandi
