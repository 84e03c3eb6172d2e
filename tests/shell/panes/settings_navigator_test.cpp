#include "shell/panes/settings_navigator.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using ::testing::ElementsAre;

TEST(SettingsNavigator, TheFirstPageIsGeneral)
{
    EXPECT_EQ(SettingsNavigator().pane(), SettingsPane::general);
}

TEST(SettingsNavigator, OnlyARealChangeIsAnnounced)
{
    SettingsNavigator navigator;
    std::vector<SettingsPane> seen;
    QObject::connect(&navigator, &SettingsNavigator::paneChanged, &navigator,
                     [&] { seen.push_back(navigator.pane()); });
    navigator.setPane(SettingsPane::general);
    navigator.setPane(SettingsPane::history);
    navigator.setPane(SettingsPane::history);
    EXPECT_THAT(seen, ElementsAre(SettingsPane::history));
}

TEST(SettingsNavigator, ThePagesHaveTheirTitlesInTheirOrder)
{
    std::vector<QString> titles;
    for (const SettingsPane pane : allSettingsPanes)
        titles.push_back(title(pane));
    EXPECT_THAT(titles, ElementsAre(QStringLiteral("General"), QStringLiteral("Vocabulary"),
                                    QStringLiteral("History"), QStringLiteral("Permissions")));
}

} // namespace
} // namespace corvandi
