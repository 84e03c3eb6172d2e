#include "views/menu/menu_view.h"

#include "support/event_loop.h"

#include <gmock/gmock.h>

#include <optional>

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::waitUntil;

MenuButton button(const char* title, std::function<void()> action = {})
{
    return {.title = QString::fromUtf8(title), .action = std::move(action), .shortcut = {}};
}

/// A line of the menu: "(text)" if it can't be chosen, "---" for a divider, else the text and the shortcut.
std::string lineOf(const QAction& action)
{
    if (action.isSeparator())
        return "---";
    const std::string text = action.text().toStdString();
    if (!action.isEnabled())
        return "(" + text + ")";
    const QString shortcut = action.shortcut().toString(QKeySequence::PortableText);
    return shortcut.isEmpty() ? text : text + " " + shortcut.toStdString();
}

class MenuViewTest : public ::testing::Test {
protected:
    [[nodiscard]] std::vector<std::string> lines()
    {
        std::vector<std::string> result;
        for (const QAction* action : view->menu().actions())
            result.push_back(lineOf(*action));
        return result;
    }

    MenuEntries entries{MenuText{QStringLiteral("text")}, MenuDivider{}, button("button")};
    int asked = 0;
    std::optional<MenuView> view{std::in_place, [this] {
                                     ++asked;
                                     return entries;
                                 }};
    std::vector<std::string> chosen;
};

TEST_F(MenuViewTest, ShowsTextsDividersAndButtonsInTheirOrder)
{
    MenuButton off = button("off");
    off.isEnabled = false;
    MenuButton quit = button("quit");
    quit.shortcut = Qt::CTRL | Qt::Key_Q;
    MenuButton settings = button("settings");
    settings.shortcut = Qt::CTRL | Qt::Key_Comma;
    entries = {MenuText{QStringLiteral("text")}, button("on"), MenuDivider{}, off, settings, quit};
    view->refresh();
    EXPECT_THAT(lines(), ElementsAre("(text)", "on", "---", "(off)", "settings Ctrl+,", "quit Ctrl+Q"));
}

TEST_F(MenuViewTest, AsksAgainEachTimeItOpens)
{
    for (const char* title : {"first", "second"}) {
        entries = {button(title)};
        view->menu().popup(QPoint(100, 100));
        EXPECT_THAT(lines(), ElementsAre(title));
        view->menu().hide();
    }
}

TEST_F(MenuViewTest, StaysAsItIsWhileItIsOpen)
{
    view->menu().popup(QPoint(100, 100));
    entries = {button("new")};
    view->refresh();
    EXPECT_THAT(lines(), ElementsAre("(text)", "---", "button"));
    view->menu().hide();
    view->refresh();
    EXPECT_THAT(lines(), ElementsAre("new"));
}

TEST_F(MenuViewTest, KeepsItsItemsWhenTheyLookTheSameButRunsTheNewAction)
{
    entries.back() = button("button", [this] { chosen.emplace_back("old"); });
    view->refresh();
    QAction* item = view->menu().actions().back();
    entries.back() = button("button", [this] { chosen.emplace_back("new"); });
    view->refresh();
    ASSERT_EQ(view->menu().actions().back(), item);
    item->trigger();
    EXPECT_TRUE(waitUntil([this] { return !chosen.empty(); }));
    EXPECT_THAT(chosen, ElementsAre("new"));
}

TEST_F(MenuViewTest, RunsAnActionAfterTheChoiceAndOnce)
{
    entries = {button("one", [this] { chosen.emplace_back("one"); }),
               button("two", [this] { chosen.emplace_back("two"); })};
    view->refresh();
    view->menu().actions().back()->trigger();
    EXPECT_THAT(chosen, IsEmpty());
    testing::runFor(std::chrono::milliseconds(20));
    EXPECT_THAT(chosen, ElementsAre("two"));
}

TEST_F(MenuViewTest, AnActionMayChangeTheMenuThatItWasChosenFrom)
{
    entries = {button("one", [this] {
        entries = {button("other")};
        view->refresh();
        chosen.emplace_back("one");
    })};
    view->refresh();
    view->menu().actions().front()->trigger();
    EXPECT_TRUE(waitUntil([this] { return !chosen.empty(); }));
    EXPECT_THAT(lines(), ElementsAre("other"));
}

TEST_F(MenuViewTest, AnActionThatIsNotSetDoesNothing)
{
    view->menu().actions().back()->trigger();
    testing::runFor(std::chrono::milliseconds(20));
    EXPECT_THAT(lines(), ElementsAre("(text)", "---", "button"));
}

TEST_F(MenuViewTest, RunsNoActionWhenItIsGone)
{
    entries = {button("one", [this] { chosen.emplace_back("one"); })};
    view->refresh();
    view->menu().actions().front()->trigger();
    view.reset();
    testing::runFor(std::chrono::milliseconds(20));
    EXPECT_THAT(chosen, IsEmpty());
}

TEST_F(MenuViewTest, ShowsAmpersandsAsTheyAre)
{
    entries = {MenuText{QStringLiteral("⌥ & more")}};
    view->refresh();
    EXPECT_THAT(lines(), ElementsAre("(⌥ && more)"));
}

TEST_F(MenuViewTest, IsAskedOnceForEachOpening)
{
    const int before = asked;
    view->menu().popup(QPoint(100, 100));
    EXPECT_EQ(asked, before + 1);
    view->menu().hide();
}

} // namespace
} // namespace corvandi
