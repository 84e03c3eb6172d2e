#include "settings_fixture.h"

#include "ports/key_codes.h"
#include "views/kit/controls.h"

namespace corvandi::testing {
namespace {

using ::testing::ElementsAre;

class GeneralPaneViewTest : public SettingsFixture {
protected:
    void open()
    {
        view = std::make_unique<GeneralPaneView>(parts.general, parts.recorder);
        view->resize(440, 560);
        ASSERT_TRUE(isShown(*view));
        parts.queue.drain();
    }
    [[nodiscard]] kit::Switch& toggle(const char* name)
    {
        return named<kit::Switch>(*view, QString::fromUtf8(name));
    }

    std::unique_ptr<GeneralPaneView> view;
};

struct Toggle {
    const char* name;
    bool (Settings::*get)() const;
    void (Settings::*set)(bool);
};

const Toggle toggles[] = {
    {"Auto punctuation & capitalization", &Settings::autoPunctuation, &Settings::setAutoPunctuation},
    {"Remove filler words (um, uh…)", &Settings::removeDisfluencies, &Settings::setRemoveDisfluencies},
    {"Rewrite into clean sentences", &Settings::cleanUpSentences, &Settings::setCleanUpSentences},
    {"Save history", &Settings::saveHistory, &Settings::setSaveHistory},
};

TEST_F(GeneralPaneViewTest, TheControlsStandInTheirOrder)
{
    open();
    QStringList labels;
    for (const kit::FormRow* row : view->findChildren<kit::FormRow*>())
        labels << row->label().text();
    EXPECT_THAT(labels,
                ElementsAre(QStringLiteral("Dictation hotkey"),
                            QStringLiteral("Auto punctuation & capitalization"),
                            QStringLiteral("Remove filler words (um, uh…)"),
                            QStringLiteral("Rewrite into clean sentences"), QStringLiteral("Insert text by"),
                            QStringLiteral("Save history"), QStringLiteral("Launch at login")));
    EXPECT_TRUE(shows(*view, QStringLiteral("Hold the hotkey, speak, release to insert.")));
    parts.recorder.beginRecording();
    parts.capture.press({std::nullopt, 0, 107});
    EXPECT_TRUE(shows(*view, QStringLiteral("This key can't be the hotkey. Press another one.")));
    parts.capture.press({virtual_key::space, modifier_flags::option});
    EXPECT_TRUE(shows(*view, QStringLiteral("Hold the hotkey, speak, release to insert.")));
}

TEST_F(GeneralPaneViewTest, SwitchesAndSettingsFollowEachOther)
{
    open();
    for (const Toggle& each : toggles) {
        kit::Switch& shown = toggle(each.name);
        const bool before = (parts.settings.*each.get)();
        EXPECT_EQ(shown.isChecked(), before) << each.name;
        QTest::mouseClick(&shown, Qt::LeftButton);
        EXPECT_EQ((parts.settings.*each.get)(), !before) << each.name;
        QTest::keyClick(&shown, Qt::Key_Space);
        EXPECT_EQ((parts.settings.*each.get)(), before) << each.name;
        (parts.settings.*each.set)(!before);
        EXPECT_EQ(shown.isChecked(), !before) << each.name;
    }
}

TEST_F(GeneralPaneViewTest, AChangeIsWrittenOnce)
{
    open();
    parts.defaults.writes.clear();
    QTest::mouseClick(&toggle("Save history"), Qt::LeftButton);
    EXPECT_EQ(parts.defaults.writes.size(), 1U);
}

TEST_F(GeneralPaneViewTest, AClickOnTheLabelTurnsTheSwitch)
{
    open();
    QWidget& row = *toggle("Save history").parentWidget();
    QTest::mouseClick(&row, Qt::LeftButton, {}, QPoint(40, row.height() / 2));
    EXPECT_FALSE(parts.settings.saveHistory());
}

TEST_F(GeneralPaneViewTest, TheWayOfInsertingIsChosen)
{
    open();
    auto& choice = named<kit::PopUpButton>(*view, QStringLiteral("Insert text by"));
    EXPECT_EQ(choice.currentText(), QStringLiteral("Typing"));
    choice.setFocus();
    QTest::keyClick(&choice, Qt::Key_Down);
    EXPECT_EQ(choice.currentText(), QStringLiteral("Pasting"));
    EXPECT_EQ(parts.settings.insertion(), InsertionMethod::paste);
    parts.settings.setInsertion(InsertionMethod::type);
    EXPECT_EQ(choice.currentText(), QStringLiteral("Typing"));
    EXPECT_EQ(choice.count(), 2);
}

TEST_F(GeneralPaneViewTest, TheModelThatRewritesIsNamedUnderTheSwitch)
{
    parts.model.name = QStringLiteral("small:1b");
    open();
    EXPECT_TRUE(toggle("Rewrite into clean sentences").isEnabled());
    EXPECT_TRUE(shows(*view, QStringLiteral("Model: small:1b")));
}

TEST_F(GeneralPaneViewTest, WhatSpeaksAgainstRewritingComesBeforeTheModelsName)
{
    parts.model.name = QStringLiteral("small:1b");
    parts.model.state = LanguageModelAvailability::modelNotReady;
    open();
    EXPECT_TRUE(shows(*view, QStringLiteral("The model is still downloading. Try again shortly.")));
    EXPECT_FALSE(shows(*view, QStringLiteral("Model: small:1b")));
}

TEST_F(GeneralPaneViewTest, AModelThatIsStillDownloadingDisablesTheSwitch)
{
    parts.model.state = LanguageModelAvailability::modelNotReady;
    open();
    EXPECT_FALSE(toggle("Rewrite into clean sentences").isEnabled());
    EXPECT_TRUE(shows(*view, QStringLiteral("The model is still downloading. Try again shortly.")));
    EXPECT_FALSE(named<QPushButton>(*view, QStringLiteral("Open Apple Intelligence Settings…")).isVisible());
}

TEST_F(GeneralPaneViewTest, AModelThatIsOffOffersItsSettings)
{
    parts.model.state = LanguageModelAvailability::appleIntelligenceNotEnabled;
    open();
    EXPECT_FALSE(toggle("Rewrite into clean sentences").isEnabled());
    EXPECT_TRUE(shows(*view, QStringLiteral("Turn on Apple Intelligence in System Settings.")));
    auto& button = named<QPushButton>(*view, QStringLiteral("Open Apple Intelligence Settings…"));
    ASSERT_TRUE(button.isVisible());
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_THAT(parts.systemSettings.opened, ElementsAre(SystemSettingsPage::languageModel));
}

TEST_F(GeneralPaneViewTest, ComingBackFromAnotherProgramLooksAgain)
{
    parts.model.state = LanguageModelAvailability::appleIntelligenceNotEnabled;
    open();
    parts.model.state = LanguageModelAvailability::available;
    parts.loginItem.enabled = true;
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
    EXPECT_FALSE(toggle("Rewrite into clean sentences").isEnabled());
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    parts.queue.drain();
    EXPECT_TRUE(toggle("Rewrite into clean sentences").isEnabled());
    EXPECT_TRUE(toggle("Launch at login").isChecked());
}

TEST_F(GeneralPaneViewTest, ShowingItAgainLooksAgain)
{
    open();
    view->hide();
    parts.loginItem.enabled = true;
    view->show();
    EXPECT_TRUE(toggle("Launch at login").isChecked());
}

TEST_F(GeneralPaneViewTest, LaunchAtLoginIsSwitched)
{
    open();
    QTest::mouseClick(&toggle("Launch at login"), Qt::LeftButton);
    EXPECT_TRUE(parts.loginItem.enabled);
    EXPECT_TRUE(toggle("Launch at login").isChecked());
}

TEST_F(GeneralPaneViewTest, ARefusedLoginItemFlipsTheSwitchBackAndSaysWhy)
{
    open();
    parts.loginItem.failure = QStringLiteral("Operation not permitted");
    QTest::mouseClick(&toggle("Launch at login"), Qt::LeftButton);
    EXPECT_FALSE(toggle("Launch at login").isChecked());
    EXPECT_TRUE(shows(*view, QStringLiteral("Operation not permitted")));
    EXPECT_TRUE(waitUntil([this] { return toggle("Launch at login").knobPosition() == 0; }));
    EXPECT_EQ(parts.log.lines().size(), 1U);
}

} // namespace
} // namespace corvandi::testing
