#include "menu/menu_entry.h"

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

} // namespace
} // namespace corvandi
