#include "shell/menu/menu_content.h"
#include "support/fake_user_defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvandi {
namespace {

MenuEntries sample()
{
    return {MenuText{QStringLiteral("text")}, MenuDivider{},
            MenuButton{.title = QStringLiteral("button"), .action = {}, .shortcut = Qt::CTRL | Qt::Key_Q}};
}

TEST(MenuEntries, LookTheSameWhateverTheirButtonsDo)
{
    MenuEntries other = sample();
    std::get<MenuButton>(other.back()).action = [] {};
    EXPECT_TRUE(looksLike(sample(), other));
    EXPECT_TRUE(looksLike({}, {}));
}

TEST(MenuEntries, LookDifferentWithAnotherText)
{
    MenuEntries other = sample();
    std::get<MenuText>(other.front()).text = QStringLiteral("another");
    EXPECT_FALSE(looksLike(sample(), other));
}

TEST(MenuEntries, LookDifferentWithAnotherButton)
{
    MenuEntries title = sample();
    std::get<MenuButton>(title.back()).title = QStringLiteral("another");
    EXPECT_FALSE(looksLike(sample(), title));
    MenuEntries shortcut = sample();
    std::get<MenuButton>(shortcut.back()).shortcut = std::nullopt;
    EXPECT_FALSE(looksLike(sample(), shortcut));
    MenuEntries disabled = sample();
    std::get<MenuButton>(disabled.back()).isEnabled = false;
    EXPECT_FALSE(looksLike(sample(), disabled));
}

TEST(MenuEntries, LookDifferentInAnotherOrderOrNumber)
{
    MenuEntries swapped = sample();
    std::swap(swapped.front(), swapped.back());
    EXPECT_FALSE(looksLike(sample(), swapped));
    MenuEntries longer = sample();
    longer.emplace_back(MenuDivider{});
    EXPECT_FALSE(looksLike(sample(), longer));
    EXPECT_FALSE(looksLike(longer, sample()));
}

using ::testing::ElementsAre;
using testing::FakeUserDefaults;

/// An entry in one line: "text", "[button]" with its shortcut, "(disabled button)", "---".
std::string inOneLine(const MenuEntry& entry)
{
    if (const auto* text = std::get_if<MenuText>(&entry))
        return text->text.toStdString();
    const auto* button = std::get_if<MenuButton>(&entry);
    if (!button)
        return "---";
    const std::string title = button->title.toStdString();
    std::string line = button->isEnabled ? "[" + title + "]" : "(" + title + ")";
    if (button->shortcut == (Qt::CTRL | Qt::Key_Comma))
        line += " Ctrl+,";
    else if (button->shortcut == (Qt::CTRL | Qt::Key_Q))
        line += " Ctrl+Q";
    else if (button->shortcut)
        line += " another shortcut";
    return line;
}

std::vector<std::string> lines(const MenuEntries& entries)
{
    std::vector<std::string> result;
    for (const MenuEntry& entry : entries)
        result.push_back(inOneLine(entry));
    return result;
}

class MenuContentTest : public ::testing::Test {
protected:
    void choose(const std::string& line)
    {
        for (const MenuEntry& entry : content.entries()) {
            if (inOneLine(entry) == line)
                std::get<MenuButton>(entry).action();
        }
    }

    FakeUserDefaults defaults;
    Settings settings{defaults};
    std::vector<std::string> ran;
    MenuContent content{
        .settings = settings,
        .isHotkeyActive = true,
        .canCheckForUpdates = true,
        .actions = {.openAccessibility = [this] { ran.emplace_back("accessibility"); },
                    .checkForUpdates = [this] { ran.emplace_back("updates"); },
                    .openSettings = [this] { ran.emplace_back("settings"); },
                    .quit = [this] { ran.emplace_back("quit"); }},
    };
};

TEST_F(MenuContentTest, WithTheHotkeySaysHowToDictate)
{
    EXPECT_THAT(lines(content.entries()), ElementsAre("Hold ⌥Space to dictate", "---", "[Check for Updates…]",
                                                      "[Settings…] Ctrl+,", "[Quit Corvandi] Ctrl+Q"));
}

TEST_F(MenuContentTest, WithoutTheHotkeySaysWhatToGrantAndWhere)
{
    content.isHotkeyActive = false;
    EXPECT_THAT(lines(content.entries()),
                ElementsAre("Hotkey inactive. Grant Accessibility to enable.",
                            "[Open Accessibility Settings…]", "---", "[Check for Updates…]",
                            "[Settings…] Ctrl+,", "[Quit Corvandi] Ctrl+Q"));
}

TEST_F(MenuContentTest, ChecksForUpdatesOnlyWhenThatIsPossible)
{
    content.canCheckForUpdates = false;
    EXPECT_EQ(lines(content.entries()).at(2), "(Check for Updates…)");
}

TEST_F(MenuContentTest, WithoutWordFromTheUpdaterNoCheckIsPossibleAndTheHotkeyIsInactive)
{
    const MenuContent fresh{.settings = settings, .actions = {}};
    EXPECT_THAT(lines(fresh.entries()),
                ElementsAre("Hotkey inactive. Grant Accessibility to enable.",
                            "[Open Accessibility Settings…]", "---", "(Check for Updates…)",
                            "[Settings…] Ctrl+,", "[Quit Corvandi] Ctrl+Q"));
}

TEST_F(MenuContentTest, NamesTheHotkeyThatIsSetNow)
{
    settings.setHotkeyKeyCode(40);
    settings.setHotkeyControl(true);
    settings.setHotkeyOption(false);
    EXPECT_EQ(lines(content.entries()).front(), "Hold ⌃K to dictate");
}

TEST_F(MenuContentTest, NamesAHotkeyWithoutNameOrModifiersByItsNumber)
{
    settings.setHotkeyKeyCode(-1);
    settings.setHotkeyOption(false);
    EXPECT_EQ(lines(content.entries()).front(), "Hold Key -1 to dictate");
}

TEST_F(MenuContentTest, EachButtonRunsItsOwnAction)
{
    content.isHotkeyActive = false;
    choose("[Open Accessibility Settings…]");
    choose("[Check for Updates…]");
    choose("[Settings…] Ctrl+,");
    choose("[Quit Corvandi] Ctrl+Q");
    EXPECT_THAT(ran, ElementsAre("accessibility", "updates", "settings", "quit"));
}

} // namespace
} // namespace corvandi
