#include "shell/panes/general_pane.h"

#include "support/fake_language_model.h"
#include "support/fake_login_item.h"
#include "support/fake_system_settings.h"
#include "support/fake_user_defaults.h"
#include "support/recording_log.h"
#include "support/virtual_queue.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using ::testing::ElementsAre;

class GeneralPaneTest : public ::testing::Test {
protected:
    GeneralPaneTest()
    {
        QObject::connect(&pane, &GeneralPane::changed, &pane, [this] { ++changes; });
    }
    void refreshWith(LanguageModelAvailability availability)
    {
        model.state = availability;
        pane.refresh();
        queue.drain();
    }

    testing::VirtualQueue queue;
    testing::FakeUserDefaults defaults;
    testing::FakeLanguageModel model{queue};
    testing::FakeLoginItem loginItem;
    testing::FakeSystemSettings systemSettings;
    testing::RecordingLog log;
    Settings settings{defaults};
    GeneralPane pane{{settings, model, loginItem, systemSettings, log}};
    int changes = 0;
};

TEST_F(GeneralPaneTest, AnAvailableModelNeedsNoCaption)
{
    refreshWith(LanguageModelAvailability::available);
    EXPECT_EQ(pane.rewriteCaption(), std::nullopt);
    EXPECT_FALSE(pane.canEnableAppleIntelligence());
}

TEST_F(GeneralPaneTest, TheModelThatRewritesIsNamed)
{
    model.name = QStringLiteral("small:1b");
    refreshWith(LanguageModelAvailability::available);
    EXPECT_EQ(pane.rewriteModel(), QStringLiteral("small:1b"));
    refreshWith(LanguageModelAvailability::modelNotReady);
    EXPECT_EQ(pane.rewriteModel(), std::nullopt);
}

TEST_F(GeneralPaneTest, SwitchingRewritingOnWarmsTheModelUp)
{
    EXPECT_EQ(model.warmUps, 0);
    settings.setCleanUpSentences(true);
    EXPECT_EQ(model.warmUps, 1);
    settings.setCleanUpSentences(false);
    EXPECT_EQ(model.warmUps, 1);
}

TEST_F(GeneralPaneTest, AModelThatIsStillDownloadingIsExplained)
{
    refreshWith(LanguageModelAvailability::modelNotReady);
    EXPECT_EQ(pane.rewriteCaption(), QStringLiteral("The model is still downloading. Try again shortly."));
    EXPECT_FALSE(pane.canEnableAppleIntelligence());
}

TEST_F(GeneralPaneTest, AModelThatIsSwitchedOffCanBeSwitchedOn)
{
    refreshWith(LanguageModelAvailability::appleIntelligenceNotEnabled);
    EXPECT_EQ(pane.rewriteCaption(), QStringLiteral("Turn on Apple Intelligence in System Settings."));
    EXPECT_TRUE(pane.canEnableAppleIntelligence());
}

TEST_F(GeneralPaneTest, WithoutAModelThereIsNothingToSwitchOn)
{
    for (const auto reason :
         {LanguageModelAvailability::deviceNotEligible, LanguageModelAvailability::otherReason}) {
        refreshWith(reason);
        EXPECT_NE(pane.rewriteCaption(), std::nullopt);
        EXPECT_FALSE(pane.canEnableAppleIntelligence());
    }
}

TEST_F(GeneralPaneTest, TheCaptionGoesWhenTheModelHasCome)
{
    refreshWith(LanguageModelAvailability::modelNotReady);
    refreshWith(LanguageModelAvailability::available);
    EXPECT_EQ(pane.rewriteCaption(), std::nullopt);
    EXPECT_FALSE(pane.canEnableAppleIntelligence());
}

TEST_F(GeneralPaneTest, WhatIsShownStaysUntilTheModelHasAnswered)
{
    refreshWith(LanguageModelAvailability::modelNotReady);
    model.looksAreHeld = true;
    changes = 0;
    refreshWith(LanguageModelAvailability::available);
    EXPECT_NE(pane.rewriteCaption(), std::nullopt);
    EXPECT_EQ(changes, 1) << "of the login item";
    model.endLooks();
    queue.drain();
    EXPECT_EQ(pane.rewriteCaption(), std::nullopt);
    EXPECT_EQ(changes, 2);
}

TEST_F(GeneralPaneTest, BeforeTheFirstAnswerNothingIsHeldAgainstRewriting)
{
    model.looksAreHeld = true;
    refreshWith(LanguageModelAvailability::otherReason);
    EXPECT_EQ(pane.rewriteCaption(), std::nullopt);
}

TEST_F(GeneralPaneTest, ARefreshWhileTheModelIsLookedAtTakesThePlaceOfTheEarlierOne)
{
    model.looksAreHeld = true;
    pane.refresh();
    pane.refresh();
    changes = 0;
    model.endLooks();
    queue.drain();
    EXPECT_EQ(changes, 1);
}

TEST_F(GeneralPaneTest, APaneThatIsGoneIsToldNothing)
{
    model.looksAreHeld = true;
    {
        GeneralPane other{{settings, model, loginItem, systemSettings, log}};
        other.refresh();
        EXPECT_TRUE(model.isLookedAt());
    }
    EXPECT_FALSE(model.isLookedAt());
}

TEST_F(GeneralPaneTest, TheButtonOpensTheModelsPage)
{
    pane.openAppleIntelligenceSettings();
    EXPECT_THAT(systemSettings.opened, ElementsAre(SystemSettingsPage::languageModel));
}

TEST_F(GeneralPaneTest, ALoginItemThatWasChangedElsewhereIsSeenAtTheNextRefresh)
{
    EXPECT_FALSE(pane.launchAtLogin());
    loginItem.enabled = true;
    EXPECT_FALSE(pane.launchAtLogin());
    pane.refresh();
    EXPECT_TRUE(pane.launchAtLogin());
}

TEST_F(GeneralPaneTest, LaunchAtLoginIsSwitchedOnAndOff)
{
    pane.setLaunchAtLogin(true);
    EXPECT_TRUE(loginItem.enabled);
    EXPECT_TRUE(pane.launchAtLogin());
    pane.setLaunchAtLogin(false);
    EXPECT_FALSE(loginItem.enabled);
    EXPECT_FALSE(pane.launchAtLogin());
    EXPECT_EQ(changes, 2);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(GeneralPaneTest, ARefusedLoginItemLeavesTheSwitchOffAndSaysWhy)
{
    loginItem.failure = QStringLiteral("Operation not permitted");
    pane.setLaunchAtLogin(true);
    EXPECT_FALSE(pane.launchAtLogin());
    EXPECT_EQ(pane.launchAtLoginError(), QStringLiteral("Operation not permitted"));
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral(
                                 "Corvandi: launch-at-login change failed: Operation not permitted")));
    EXPECT_EQ(changes, 1) << "a switch that was turned must flip back";
}

TEST_F(GeneralPaneTest, ARefusedRemovalLeavesTheSwitchOn)
{
    loginItem.enabled = true;
    pane.refresh();
    loginItem.failure = QStringLiteral("Read-only file system");
    pane.setLaunchAtLogin(false);
    EXPECT_TRUE(pane.launchAtLogin());
    EXPECT_EQ(pane.launchAtLoginError(), QStringLiteral("Read-only file system"));
}

TEST_F(GeneralPaneTest, TheErrorGoesWithTheNextSuccess)
{
    loginItem.failure = QStringLiteral("Disk full");
    pane.setLaunchAtLogin(true);
    pane.refresh();
    EXPECT_NE(pane.launchAtLoginError(), std::nullopt) << "a refresh is no success";
    loginItem.failure.reset();
    pane.setLaunchAtLogin(true);
    EXPECT_EQ(pane.launchAtLoginError(), std::nullopt);
    EXPECT_TRUE(pane.launchAtLogin());
}

} // namespace
} // namespace corvandi
