#include "core/dictation/dictation_fixture.h"

namespace corvandi::testing {
namespace {

/// What the history holds after each outcome.
class HistoryDeliveryTest : public DictationFixture {
protected:
    [[nodiscard]] std::vector<QString> kept()
    {
        std::vector<QString> texts;
        for (const HistoryEntry& entry : controller->store().history())
            texts.push_back(entry.text);
        return texts;
    }
};

const QString words = QStringLiteral("Go forward ten meters.");

TEST_F(HistoryDeliveryTest, AnInsertedTextIsKeptWithTheTimeOfItsDelivery)
{
    clock.date = Date{800'000'000.5};
    dictate(words);
    ASSERT_EQ(controller->store().history().size(), 1U);
    EXPECT_EQ(controller->store().history()[0].text, words);
    EXPECT_EQ(controller->store().history()[0].date, Date{800'000'000.5});
}

TEST_F(HistoryDeliveryTest, TheNewestIsFirst)
{
    dictate(QStringLiteral("One."));
    dictate(QStringLiteral("Two."));
    EXPECT_EQ(kept(), (std::vector{QStringLiteral("Two."), QStringLiteral("One.")}));
}

TEST_F(HistoryDeliveryTest, TheFinalTextIsKept)
{
    settings.setAutoPunctuation(false);
    dictate(words);
    EXPECT_EQ(kept(), std::vector{QStringLiteral("go forward ten meters")});
}

TEST_F(HistoryDeliveryTest, NothingIsKeptWhenTheUserWantsNoHistory)
{
    settings.setSaveHistory(false);
    dictate(words);
    dictateAndFail(words);
    EXPECT_TRUE(kept().empty());
}

TEST_F(HistoryDeliveryTest, ATextThatWentToTheClipboardIsKept)
{
    hold();
    workspace.frontmost = QStringLiteral("org.example.other");
    recognise(words);
    EXPECT_EQ(kept(), std::vector{words});
}

TEST_F(HistoryDeliveryTest, ATextThatNeitherInsertionNorClipboardTookIsKept)
{
    keyboard.hasSources = false;
    pasteboard.acceptsText = false;
    dictate(words);
    EXPECT_TRUE(shows(HUDState::error, "Couldn't copy to the clipboard (saved to history)."));
    EXPECT_EQ(kept(), std::vector{words});
}

TEST_F(HistoryDeliveryTest, APartialTranscriptIsKept)
{
    dictateAndFail(words);
    EXPECT_EQ(kept(), std::vector{words});
}

TEST_F(HistoryDeliveryTest, NothingHeardIsNotKept)
{
    dictate(QStringLiteral("   "));
    dictateAndFail(QStringLiteral("   "));
    EXPECT_TRUE(kept().empty());
}

TEST_F(HistoryDeliveryTest, ATimeOutKeepsNothing)
{
    hold();
    queue.advance(5s);
    EXPECT_TRUE(shows(HUDState::error, "Transcription timed out."));
    recognise(words);
    EXPECT_TRUE(kept().empty());
}

TEST_F(HistoryDeliveryTest, ATextForAPasswordFieldIsNotKept)
{
    hold();
    focus.focusPasswordField();
    recognise(words);
    EXPECT_TRUE(kept().empty());
}

TEST_F(HistoryDeliveryTest, ATooShortPressKeepsNothing)
{
    hold(349ms);
    recognise(words);
    EXPECT_TRUE(kept().empty());
}

TEST_F(HistoryDeliveryTest, ATextIsKeptEvenIfANewerDictationHasBegun)
{
    hold();
    press();
    recognise(words);
    EXPECT_EQ(kept(), std::vector{words});
}

TEST_F(HistoryDeliveryTest, TheHistoryIsWrittenToItsFile)
{
    dictate(words);
    storeQueue.runAll();
    EXPECT_TRUE(files.files[QStringLiteral("/data/Corvandi/history.json")].contains(words.toUtf8()));
}

} // namespace
} // namespace corvandi::testing
