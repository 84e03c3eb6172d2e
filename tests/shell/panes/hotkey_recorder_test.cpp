#include "shell/panes/hotkey_recorder.h"

#include "ports/key_codes.h"
#include "support/fake_key_capture.h"
#include "support/fake_user_defaults.h"
#include "support/recording_log.h"
#include "support/virtual_queue.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

constexpr uint16_t keyD = 2;
constexpr uint16_t keyEscape = 53;
const QString prompt = QStringLiteral("Press keys…");

class HotkeyRecorderTest : public ::testing::Test {
protected:
    HotkeyRecorderTest()
    {
        QObject::connect(&recorder, &HotkeyRecorder::changed, &recorder, [this] { ++changes; });
    }

    testing::FakeUserDefaults defaults;
    testing::FakeKeyCapture capture;
    testing::VirtualQueue queue;
    testing::RecordingLog log;
    Settings settings{defaults};
    int applied = 0;
    int changes = 0;
    HotkeyRecorder recorder{settings, capture, queue, log, [this] { ++applied; }};
};

TEST_F(HotkeyRecorderTest, ItShowsThePresentHotkey)
{
    EXPECT_EQ(recorder.label(), QStringLiteral("⌥Space"));
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_FALSE(capture.isHeld());
}

TEST_F(HotkeyRecorderTest, ItShowsAHotkeyThatWasSetElsewhere)
{
    settings.setHotkeyShift(true);
    EXPECT_EQ(recorder.label(), QStringLiteral("⌥⇧Space"));
    EXPECT_EQ(changes, 1);
}

TEST_F(HotkeyRecorderTest, ArmingItShowsThePromptAndTakesTheKeyboard)
{
    recorder.beginRecording();
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_EQ(recorder.label(), prompt);
    EXPECT_TRUE(capture.isHeld());
    EXPECT_EQ(changes, 1);
}

TEST_F(HotkeyRecorderTest, TheNextKeyBecomesTheHotkeyWithItsModifiers)
{
    recorder.beginRecording();
    capture.press({keyD, modifier_flags::control | modifier_flags::option});

    EXPECT_EQ(settings.hotkeyKeyCode(), 2);
    EXPECT_TRUE(settings.hotkeyControl());
    EXPECT_TRUE(settings.hotkeyOption());
    EXPECT_FALSE(settings.hotkeyCommand());
    EXPECT_FALSE(settings.hotkeyShift());
    EXPECT_EQ(recorder.label(), QStringLiteral("⌃⌥D"));
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_FALSE(capture.isHeld());
    EXPECT_EQ(applied, 1);
}

TEST_F(HotkeyRecorderTest, EverythingIsStoredAtOnceInAFixedOrderChangedOrNot)
{
    recorder.beginRecording();
    defaults.writes.clear();
    capture.press({keyD, modifier_flags::command});
    using Write = std::pair<QString, DefaultsValue>;
    EXPECT_THAT(defaults.writes, ElementsAre(Write(QStringLiteral("hotkeyKeyCode"), int64_t{2}),
                                             Write(QStringLiteral("hotkeyCommand"), true),
                                             Write(QStringLiteral("hotkeyOption"), false),
                                             Write(QStringLiteral("hotkeyShift"), false),
                                             Write(QStringLiteral("hotkeyControl"), false)));
}

TEST_F(HotkeyRecorderTest, TheHotkeyIsAppliedAfterItIsStoredAndShown)
{
    QString shown;
    int64_t stored = 0;
    HotkeyRecorder other(settings, capture, queue, log, [&] {
        shown = other.label();
        stored = settings.hotkeyKeyCode();
        EXPECT_FALSE(capture.isHeld());
    });
    other.beginRecording();
    capture.press({keyD, 0});
    EXPECT_EQ(shown, QStringLiteral("D"));
    EXPECT_EQ(stored, 2);
}

TEST_F(HotkeyRecorderTest, EscapeIsAHotkeyLikeAnyOther)
{
    recorder.beginRecording();
    capture.press({keyEscape, 0});
    EXPECT_EQ(settings.hotkeyKeyCode(), 53);
    EXPECT_FALSE(settings.hotkeyOption());
    EXPECT_EQ(recorder.label(), QStringLiteral("Esc"));
    EXPECT_EQ(applied, 1);
}

TEST_F(HotkeyRecorderTest, AKeyWithoutANameIsShownByItsCode)
{
    recorder.beginRecording();
    capture.press({122, modifier_flags::shift});
    EXPECT_EQ(recorder.label(), QStringLiteral("⇧Key 122"));
}

TEST_F(HotkeyRecorderTest, OtherModifierBitsAreIgnored)
{
    constexpr uint64_t capsLockFnAndKeypad = 0x10000 | 0x800000 | 0x200000;
    recorder.beginRecording();
    capture.press({keyD, capsLockFnAndKeypad});
    EXPECT_EQ(recorder.label(), QStringLiteral("D"));
}

TEST_F(HotkeyRecorderTest, KeysWhileItIsNotArmedTravelOn)
{
    defaults.writes.clear();
    EXPECT_FALSE(recorder.keyDown({keyD, 0}));
    EXPECT_TRUE(defaults.writes.empty());
    EXPECT_EQ(applied, 0);
    EXPECT_EQ(changes, 0);
}

TEST_F(HotkeyRecorderTest, OnlyOneKeyIsTaken)
{
    recorder.beginRecording();
    EXPECT_TRUE(recorder.keyDown({keyD, 0}));
    EXPECT_FALSE(recorder.keyDown({keyEscape, 0}));
    EXPECT_EQ(settings.hotkeyKeyCode(), 2);
    EXPECT_EQ(applied, 1);
}

TEST_F(HotkeyRecorderTest, ARefreshWhileArmedLeavesThePrompt)
{
    recorder.beginRecording();
    settings.setHotkeyShift(true);
    recorder.refresh();
    EXPECT_EQ(recorder.label(), prompt);
}

TEST_F(HotkeyRecorderTest, ASecondClickLeavesItArmed)
{
    recorder.beginRecording();
    recorder.beginRecording();
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_EQ(capture.begun, 1);
    EXPECT_EQ(changes, 1);
}

TEST_F(HotkeyRecorderTest, WithoutTheFocusItGivesTheKeyboardBackAndStaysArmed)
{
    recorder.beginRecording();
    recorder.focusLost();
    EXPECT_FALSE(capture.isHeld());
    EXPECT_EQ(recorder.label(), prompt);
    queue.advance(1h);
    EXPECT_TRUE(recorder.isRecording());
}

TEST_F(HotkeyRecorderTest, WithTheFocusBackItTakesTheKeyboardAgain)
{
    recorder.beginRecording();
    recorder.focusLost();
    recorder.focusGained();
    ASSERT_TRUE(capture.isHeld());
    capture.press({keyD, 0});
    EXPECT_EQ(recorder.label(), QStringLiteral("D"));
}

TEST_F(HotkeyRecorderTest, TheFocusAloneTakesNoKeyboard)
{
    recorder.focusGained();
    EXPECT_FALSE(capture.isHeld());
}

TEST_F(HotkeyRecorderTest, TheKeyboardIsHeldForAMinuteAtMost)
{
    recorder.beginRecording();
    queue.advance(60s - 1ms);
    EXPECT_TRUE(capture.isHeld());
    queue.advance(1ms);
    EXPECT_FALSE(capture.isHeld());
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_TRUE(recorder.keyDown({keyD, 0}));
}

TEST_F(HotkeyRecorderTest, NoTimeLimitIsLeftBehind)
{
    recorder.beginRecording();
    capture.press({keyD, 0});
    EXPECT_EQ(queue.timerCount(), 0U);
}

TEST_F(HotkeyRecorderTest, WithoutTheKeyboardKeysComeFromTheWindow)
{
    capture.givesKeyboardAway = false;
    capture.keyCodes = {{40, keyD}};
    recorder.beginRecording();
    EXPECT_TRUE(recorder.nativeKeyDown(40, modifier_flags::control));
    EXPECT_EQ(recorder.label(), QStringLiteral("⌃D"));
    EXPECT_EQ(applied, 1);
}

TEST_F(HotkeyRecorderTest, AKeyWithoutACodeLeavesItArmed)
{
    recorder.beginRecording();
    EXPECT_FALSE(recorder.nativeKeyDown(180, 0));
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_EQ(applied, 0);
}

TEST_F(HotkeyRecorderTest, AKeyThatCannotBeAHotkeyIsRefusedInWordsAndAnotherOneIsWaitedFor)
{
    recorder.beginRecording();
    EXPECT_FALSE(recorder.complaint());
    capture.press({std::nullopt, modifier_flags::option, 107});
    EXPECT_EQ(recorder.complaint(), QStringLiteral("This key can't be the hotkey. Press another one."));
    EXPECT_THAT(log.lines(), ::testing::SizeIs(1));
    EXPECT_TRUE(log.contains(QStringLiteral("107")));
    EXPECT_EQ(recorder.label(), prompt);
    EXPECT_TRUE(capture.isHeld());
    EXPECT_EQ(applied, 0);
    EXPECT_EQ(changes, 2);

    capture.press({keyD, 0});
    EXPECT_FALSE(recorder.complaint());
    EXPECT_EQ(recorder.label(), QStringLiteral("D"));
}

TEST_F(HotkeyRecorderTest, ArmingItAnewForgetsTheComplaint)
{
    recorder.beginRecording();
    capture.press({std::nullopt, 0, 107});
    recorder.beginRecording();
    EXPECT_TRUE(recorder.complaint()) << "it was armed";
    capture.press({keyD, 0});
    recorder.beginRecording();
    EXPECT_FALSE(recorder.complaint());
}

TEST_F(HotkeyRecorderTest, AWindowsKeyThatCannotBeAHotkeyIsRefusedInWordsUnlessItIsAModifier)
{
    capture.givesKeyboardAway = false;
    capture.modifiers = {92};
    recorder.beginRecording();
    EXPECT_FALSE(recorder.nativeKeyDown(92, 0));
    EXPECT_FALSE(recorder.complaint());
    EXPECT_FALSE(recorder.nativeKeyDown(127, 0));
    EXPECT_TRUE(recorder.complaint());
}

TEST_F(HotkeyRecorderTest, AWindowsKeyWhileItIsNotArmedTravelsOn)
{
    capture.keyCodes = {{40, keyD}};
    EXPECT_FALSE(recorder.nativeKeyDown(40, 0));
    EXPECT_EQ(settings.hotkeyKeyCode(), 49);
}

} // namespace
} // namespace corvandi
