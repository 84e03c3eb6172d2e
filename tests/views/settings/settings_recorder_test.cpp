#include "settings_fixture.h"

#include "session/x11/keys/test_keyboard.h"
#include "session/x11/keys/x11_key_capture.h"
#include "views/settings/general_pane_view.h"

#include <QLineEdit>

namespace corvandi::testing {
namespace {

constexpr quint32 nativeD = 40;
constexpr uint16_t virtualD = 2;
constexpr uint8_t tabKey = 23;

class RecorderViewTest : public SettingsFixture {
protected:
    void open(HotkeyRecorder& recorder)
    {
        view = std::make_unique<RecorderView>(recorder, &window);
        window.resize(200, 80);
        other.move(0, 40);
        ASSERT_TRUE(isShown(window));
    }
    void press(int key, quint32 native, Qt::KeyboardModifiers modifiers = {})
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, native, 0, 0);
        QApplication::sendEvent(QApplication::focusWidget(), &event);
    }

    QWidget window;
    QLineEdit other{&window};
    std::unique_ptr<RecorderView> view;
};

TEST_F(RecorderViewTest, AClickArmsIt)
{
    open(parts.recorder);
    QTest::mouseClick(view.get(), Qt::LeftButton);
    EXPECT_TRUE(parts.recorder.isRecording());
    EXPECT_TRUE(view->hasFocus());
    EXPECT_TRUE(parts.capture.isHeld());
    EXPECT_EQ(view->accessibleDescription(), QStringLiteral("Press keys…"));
}

TEST_F(RecorderViewTest, SpaceArmsItWhenItIsReleased)
{
    open(parts.recorder);
    view->setFocus();
    QTest::keyPress(view.get(), Qt::Key_Space);
    EXPECT_FALSE(parts.recorder.isRecording());
    QTest::keyRelease(view.get(), Qt::Key_Space);
    EXPECT_TRUE(parts.recorder.isRecording());
}

TEST_F(RecorderViewTest, WithoutTheKeyboardItTakesTheWindowsKeys)
{
    parts.capture.givesKeyboardAway = false;
    parts.capture.keyCodes = {{nativeD, virtualD}};
    open(parts.recorder);
    QTest::mouseClick(view.get(), Qt::LeftButton);
    press(Qt::Key_D, nativeD, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(view->accessibleDescription(), QStringLiteral("⌃⌥D"));
    EXPECT_EQ(parts.hotkeysApplied, 1);
    EXPECT_FALSE(parts.recorder.isRecording());
}

TEST_F(RecorderViewTest, WithoutTheKeyboardTabIsAHotkeyToo)
{
    parts.capture.givesKeyboardAway = false;
    parts.capture.keyCodes = {{tabKey, 48}};
    open(parts.recorder);
    QTest::mouseClick(view.get(), Qt::LeftButton);
    press(Qt::Key_Tab, tabKey);
    EXPECT_EQ(view->accessibleDescription(), QStringLiteral("Tab"));
    EXPECT_TRUE(view->hasFocus());
}

TEST_F(RecorderViewTest, KeysWhileItIsNotArmedTravelOn)
{
    parts.capture.keyCodes = {{nativeD, virtualD}, {tabKey, 48}};
    open(parts.recorder);
    view->setFocus();
    press(Qt::Key_D, nativeD);
    EXPECT_EQ(parts.settings.hotkeyKeyCode(), 49);
    press(Qt::Key_Tab, tabKey);
    EXPECT_TRUE(other.hasFocus()) << "Tab moves the focus";
}

TEST_F(RecorderViewTest, LosingTheFocusGivesTheKeyboardBackAndKeepsThePrompt)
{
    open(parts.recorder);
    QTest::mouseClick(view.get(), Qt::LeftButton);
    other.setFocus();
    EXPECT_FALSE(parts.capture.isHeld());
    EXPECT_EQ(view->accessibleDescription(), QStringLiteral("Press keys…"));
    view->setFocus();
    EXPECT_TRUE(parts.capture.isHeld());
}

TEST_F(RecorderViewTest, ClosingTheWindowGivesTheKeyboardBack)
{
    open(parts.recorder);
    QTest::mouseClick(view.get(), Qt::LeftButton);
    window.close();
    EXPECT_FALSE(parts.capture.isHeld());
}

TEST_F(RecorderViewTest, GoingAwayGivesTheKeyboardBack)
{
    open(parts.recorder);
    QTest::mouseClick(view.get(), Qt::LeftButton);
    view.reset();
    EXPECT_FALSE(parts.capture.isHeld());
}

/// The same with the real keyboard, beside a window manager that has keys of its own.
class RecorderOnX11Test : public RecorderViewTest {
protected:
    ~RecorderOnX11Test() override { view.reset(); }

    void strike(uint8_t modifier, uint8_t key)
    {
        keyboard.press(modifier);
        keyboard.press(key);
        EXPECT_TRUE(waitUntil([this] { return !recorder.isRecording(); }));
        keyboard.release(key);
        keyboard.release(modifier);
    }

    TestKeyboard keyboard{TestKeyboard::Kind::hardware};

    X11KeyCapture capture{parts.log};
    HotkeyRecorder recorder{parts.settings, capture, parts.queue, parts.log, [] {}};
};

TEST_F(RecorderOnX11Test, AWindowManagersChordIsRecorded)
{
    open(recorder);
    QTest::mouseClick(view.get(), Qt::LeftButton);
    strike(key::leftAlt, tabKey);
    EXPECT_EQ(parts.settings.hotkeyDescription(), QStringLiteral("⌥Tab"));
    EXPECT_TRUE(window.isActiveWindow());
    EXPECT_EQ(other.text(), QString());
}

TEST_F(RecorderOnX11Test, AModifierAloneLeavesItArmed)
{
    open(recorder);
    QTest::mouseClick(view.get(), Qt::LeftButton);
    keyboard.strike(key::leftShift);
    runFor(std::chrono::milliseconds(50));
    EXPECT_TRUE(recorder.isRecording());
    strike(key::leftShift, key::a);
    EXPECT_EQ(parts.settings.hotkeyDescription(), QStringLiteral("⇧A"));
}

} // namespace
} // namespace corvandi::testing
