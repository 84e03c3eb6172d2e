#include "session/x11/keys/x11_key_capture.h"

#include "ports/key_codes.h"
#include "session/x11/keys/key_witness.h"
#include "session/x11/keys/keyboard_state.h"
#include "session/x11/keys/test_keyboard.h"
#include "session/x11/keys/watched_chord.h"
#include "session/x11/keys/x11_event_tap.h"
#include "session/x11/keys/x11_session.h"
#include "support/event_loop.h"
#include "support/recording_log.h"

#include <QProcess>

#include <gmock/gmock.h>

#include <array>

namespace corvandi::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::IsEmpty;

namespace key {
using namespace corvandi::testing::key;
inline constexpr uint8_t tab = 23;
inline constexpr uint8_t escape = 9;
inline constexpr uint8_t f4 = 70;
/// XF86AudioPlay: a key that has no virtual key code.
inline constexpr uint8_t play = 172;
} // namespace key

/// PrintScreen, ScrollLock, Pause, F21 to F24, and Play.
constexpr std::array<uint8_t, 8> keysWithoutCode{107, 78, 127, 199, 200, 201, 202, key::play};

constexpr uint16_t virtualA = 0;
constexpr uint16_t virtualTab = 48;
constexpr uint16_t virtualEscape = 53;
constexpr uint16_t virtualF4 = 118;

/// Longer than it takes a key to begin to repeat (two thirds of a second).
constexpr auto longHold = 900ms;

class X11KeyCaptureTest : public ::testing::TestWithParam<TestKeyboard::Kind> {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(waitUntil([this] { return isGrabbed(keyboard.connection(), key::tab, XCB_MOD_MASK_1); }));
        witness.focus();
    }
    void arm()
    {
        held = capture.begin([this](const CapturedKey& captured) {
            keys.push_back(captured);
            held.reset();
        });
        ASSERT_NE(held, nullptr);
    }
    /// Presses and releases a key with a modifier, as a person does.
    void strike(uint8_t modifier, uint8_t keyCode)
    {
        keyboard.press(modifier);
        keyboard.press(keyCode);
        EXPECT_TRUE(waitUntil([this] { return !held; }));
        keyboard.release(keyCode);
        keyboard.release(modifier);
    }
    [[nodiscard]] bool captures(uint16_t keyCode, uint64_t flags)
    {
        return waitUntil([this] { return !keys.empty(); }) && keys.size() == 1 &&
               keys.front().keyCode == keyCode && keys.front().flags == flags;
    }
    void expectTheKeyboardIsFree()
    {
        // A window manager may still be busy with the focus of a window that was there before.
        witness.focus();
        (void)witness.take();
        keyboard.strike(key::b);
        EXPECT_THAT(witness.takePresses(), Contains(key::b));
        const auto state = readState(keyboard.connection());
        ASSERT_TRUE(state);
        EXPECT_EQ(state->held, x11_mask::none);
    }

    RecordingLog log;
    X11KeyCapture capture{log};
    TestKeyboard keyboard{GetParam()};
    KeyWitness witness;
    std::vector<CapturedKey> keys;
    std::unique_ptr<Registration> held;
};

INSTANTIATE_TEST_SUITE_P(Keyboards, X11KeyCaptureTest,
                         ::testing::Values(TestKeyboard::Kind::synthetic, TestKeyboard::Kind::hardware),
                         [](const auto& parameter) {
                             return parameter.param == TestKeyboard::Kind::synthetic ? "synthetic"
                                                                                     : "hardware";
                         });

TEST_P(X11KeyCaptureTest, AKeyComesWithoutReachingTheApplication)
{
    arm();
    keyboard.strike(key::a);
    EXPECT_TRUE(captures(virtualA, 0));
    EXPECT_THAT(witness.takePresses(), IsEmpty());
    expectTheKeyboardIsFree();
}

TEST_P(X11KeyCaptureTest, TheApplicationKeepsItsFocus)
{
    (void)witness.take();
    arm();
    keyboard.strike(key::a);
    EXPECT_TRUE(captures(virtualA, 0));
    for (const KeyWitness::Event& event : witness.take())
        EXPECT_NE(event.happening, KeyWitness::Happening::focusOut);
}

TEST_P(X11KeyCaptureTest, ModifiersComeWithTheKeyAndAreNoKeysThemselves)
{
    arm();
    keyboard.press(key::leftControl);
    keyboard.press(key::leftShift);
    keyboard.press(key::leftSuper);
    runFor(50ms);
    EXPECT_THAT(keys, IsEmpty());
    strike(key::leftAlt, key::a);
    EXPECT_TRUE(captures(virtualA, modifier_flags::control | modifier_flags::shift | modifier_flags::option |
                                       modifier_flags::command));
    for (const uint8_t modifier : {key::leftControl, key::leftShift, key::leftSuper})
        keyboard.release(modifier);
    expectTheKeyboardIsFree();
}

TEST_P(X11KeyCaptureTest, CapsLockIsAModifierThatDoesNotCount)
{
    arm();
    keyboard.strike(key::capsLock);
    runFor(50ms);
    EXPECT_THAT(keys, IsEmpty());
    keyboard.strike(key::capsLock);
    keyboard.strike(key::escape);
    EXPECT_TRUE(captures(virtualEscape, 0));
}

TEST_P(X11KeyCaptureTest, TheWindowManagersKeysAreCapturedToo)
{
    arm();
    strike(key::leftAlt, key::tab);
    EXPECT_TRUE(captures(virtualTab, modifier_flags::option));
    keys.clear();
    arm();
    strike(key::leftAlt, key::f4);
    EXPECT_TRUE(captures(virtualF4, modifier_flags::option));
    expectTheKeyboardIsFree();
}

TEST_P(X11KeyCaptureTest, ThePresentHotkeyIsCapturedWithoutItsTapHearingOfIt)
{
    WatchedChord watched;
    X11EventTapFactory taps(log, watched);
    std::vector<KeyEvent> heard;
    const auto tap = taps.create(KeyChord{}, [&](const KeyEvent& event) {
        if (event.type != KeyEventType::flagsChanged)
            heard.push_back(event);
        return TapVerdict::swallow;
    });
    ASSERT_NE(tap, nullptr);
    tap->setEnabled(true);

    arm();
    keyboard.press(key::leftAlt);
    keyboard.press(key::space);
    EXPECT_TRUE(captures(virtual_key::space, modifier_flags::option));
    ASSERT_TRUE(tap->watch(KeyChord{}));
    runFor(longHold);
    keyboard.release(key::space);
    keyboard.release(key::leftAlt);
    runFor(50ms);
    EXPECT_THAT(heard, IsEmpty());

    keyboard.press(key::leftAlt);
    keyboard.press(key::space);
    EXPECT_TRUE(waitUntil([&] { return heard.size() == 1; })) << "the next press is the hotkey's";
    keyboard.release(key::space);
    keyboard.release(key::leftAlt);
    EXPECT_TRUE(waitUntil([&] { return heard.size() == 2; }));
}

TEST_P(X11KeyCaptureTest, AKeyThatStaysDownDoesNotRepeatIntoTheApplication)
{
    witness.focus();
    keyboard.press(key::b);
    runFor(longHold);
    keyboard.release(key::b);
    // Synthetic keys don't always.
    const auto repeats = witness.takePresses().size();
    ASSERT_GT(repeats, GetParam() == TestKeyboard::Kind::hardware ? 1U : 0U) << "keys of this server repeat";
    arm();
    keyboard.press(key::a);
    EXPECT_TRUE(captures(virtualA, 0));
    (void)witness.take();
    runFor(longHold);
    EXPECT_THAT(witness.takePresses(), IsEmpty());
    keyboard.release(key::a);
    expectTheKeyboardIsFree();
}

TEST_P(X11KeyCaptureTest, AModifierThatIsLetGoOfMeanwhileIsNotStuck)
{
    keyboard.press(key::leftShift);
    arm();
    keyboard.release(key::leftShift);
    keyboard.strike(key::a);
    EXPECT_TRUE(captures(virtualA, 0));
    expectTheKeyboardIsFree();
}

TEST_P(X11KeyCaptureTest, AModifierThatIsHeldAllTheTimeCounts)
{
    keyboard.press(key::leftShift);
    arm();
    keyboard.strike(key::a);
    EXPECT_TRUE(captures(virtualA, modifier_flags::shift));
    keyboard.release(key::leftShift);
    expectTheKeyboardIsFree();
}

TEST_P(X11KeyCaptureTest, AKeyWithoutACodeComesWithoutOne)
{
    held = capture.begin([this](const CapturedKey& captured) { keys.push_back(captured); });
    ASSERT_NE(held, nullptr);
    for (const uint8_t key : keysWithoutCode)
        keyboard.strike(key);
    ASSERT_TRUE(waitUntil([this] { return keys.size() == keysWithoutCode.size(); }));
    for (size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(keys[i].keyCode, std::nullopt);
        EXPECT_EQ(keys[i].nativeCode, keysWithoutCode[i]);
    }
    keyboard.strike(key::a);
    ASSERT_TRUE(waitUntil([this] { return keys.size() == keysWithoutCode.size() + 1; }));
    EXPECT_EQ(keys.back().keyCode, virtualA);
    held.reset();
}

TEST_P(X11KeyCaptureTest, KeysComeUntilTheRegistrationGoes)
{
    held = capture.begin([this](const CapturedKey& captured) { keys.push_back(captured); });
    ASSERT_NE(held, nullptr);
    keyboard.strike(key::a);
    keyboard.strike(key::a);
    EXPECT_TRUE(waitUntil([this] { return keys.size() == 2; }));
    held.reset();
    expectTheKeyboardIsFree();
    EXPECT_EQ(keys.size(), 2U);
}

TEST_P(X11KeyCaptureTest, WhatIsHeldAlreadyIsRefused)
{
    arm();
    const auto second = capture.begin([](const CapturedKey&) {});
    EXPECT_EQ(second, nullptr);
    EXPECT_TRUE(log.contains(QStringLiteral("another program holds the keyboard")));
}

TEST_P(X11KeyCaptureTest, AProgramThatIsKilledLeavesAFreeKeyboard)
{
    QProcess holder;
    holder.start(QStringLiteral(KEY_CAPTURE_HOLDER), {});
    QByteArray said;
    ASSERT_TRUE(waitUntil([&] {
        said += holder.readAllStandardOutput();
        return said.contains("ready");
    }));
    keyboard.strike(key::a);
    EXPECT_THAT(witness.takePresses(), IsEmpty());
    holder.kill();
    ASSERT_TRUE(holder.waitForFinished());
    EXPECT_TRUE(waitUntil([&] {
        witness.focus();
        keyboard.strike(key::b);
        return !witness.takePresses().empty();
    }));
}

TEST_P(X11KeyCaptureTest, TakingAndGivingBackIsQuick)
{
    const auto start = std::chrono::steady_clock::now();
    arm();
    held.reset();
    const auto taken = std::chrono::steady_clock::now() - start;
    RecordProperty("microseconds",
                   static_cast<int>(std::chrono::duration_cast<std::chrono::microseconds>(taken).count()));
    EXPECT_LT(taken, 100ms) << "a machine under load; alone it is some ten times less";
    expectTheKeyboardIsFree();
}

TEST(X11KeyCaptureKeys, NativeCodesAreTranslated)
{
    RecordingLog log;
    const X11KeyCapture capture(log);
    EXPECT_EQ(capture.keyCode(key::space), virtual_key::space);
    EXPECT_EQ(capture.keyCode(key::escape), virtualEscape);
    for (const uint8_t none : {key::leftAlt, key::leftShift, key::capsLock, key::play})
        EXPECT_EQ(capture.keyCode(none), std::nullopt);
    EXPECT_TRUE(capture.isModifier(key::leftAlt));
    EXPECT_TRUE(capture.isModifier(key::capsLock));
    EXPECT_FALSE(capture.isModifier(key::play));
    EXPECT_FALSE(capture.isModifier(key::space));
}

} // namespace
} // namespace corvandi::testing
