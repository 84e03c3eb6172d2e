#include "session/x11/keys/tap_fixture.h"

#include "session/x11/keys/keymap_reader.h"
#include "session/x11/keys/watched_chord.h"
#include "session/x11/xcb_connection.h"

#include <xcb/xinput.h>

#include <array>

namespace corvandi::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr KeyChord optionSpace{};
constexpr KeyChord bareF5{96, 0};
constexpr KeyChord controlF6{97, modifier_flags::control};

/// The tap on both kinds of keyboard: what a person types on, and what tests and remote sessions use.
class X11EventTapTest : public TapFixture, public ::testing::WithParamInterface<TestKeyboard::Kind> {
protected:
    TestKeyboard keyboard{GetParam()};
};

const char* nameOfKind(const ::testing::TestParamInfo<TestKeyboard::Kind>& kind)
{
    return kind.param == TestKeyboard::Kind::synthetic ? "Synthetic" : "Hardware";
}

INSTANTIATE_TEST_SUITE_P(Keyboards, X11EventTapTest,
                         ::testing::Values(TestKeyboard::Kind::synthetic, TestKeyboard::Kind::hardware),
                         nameOfKind);

TEST_P(X11EventTapTest, TheChordIsReportedAndNeverReachesTheApplication)
{
    install();
    EXPECT_TRUE(strikeIsHeard(keyboard, key::leftAlt, key::space));

    const auto down = std::find_if(events.begin(), events.end(),
                                   [](const KeyEvent& event) { return event.type == KeyEventType::keyDown; });
    ASSERT_NE(down, events.end());
    EXPECT_EQ(down->keyCode, virtual_key::space);
    EXPECT_EQ(down->flags, modifier_flags::option);
    for (const auto& event : witness.take())
        EXPECT_NE(event.keyCode, key::space);
}

/// Sticky keys, for people who can't hold two keys at once, are on while it lives.
class StickyKeys {
public:
    explicit StickyKeys(const X11Connection& connection)
        : connection_(connection)
    {
        set(XCB_XKB_BOOL_CTRL_STICKY_KEYS);
    }
    ~StickyKeys() { set(0); }
    StickyKeys(const StickyKeys&) = delete;
    StickyKeys& operator=(const StickyKeys&) = delete;

private:
    void set(uint32_t enabled)
    {
        constexpr std::array<uint8_t, sizeof(xcb_xkb_get_controls_reply_t::perKeyRepeat)> noRepeats{};
        xcb_xkb_set_controls(connection_.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                             XCB_XKB_BOOL_CTRL_STICKY_KEYS, enabled, XCB_XKB_CONTROL_CONTROLS_ENABLED, 0, 0,
                             0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, noRepeats.data());
        connection_.sync();
    }

    const X11Connection& connection_;
};

TEST_P(X11EventTapTest, WithStickyKeysTheModifierIsStruckFirstAndCountsUntilTheKeyIsUp)
{
    install();
    const StickyKeys sticky(keyboard.connection());
    for (int i = 0; i < 2; ++i) {
        events.clear();
        keyboard.strike(key::leftAlt);
        keyboard.press(key::space);
        ASSERT_TRUE(hears(KeyEventType::keyDown));
        runFor(50ms);
        const auto down = std::find_if(events.begin(), events.end(), [](const KeyEvent& event) {
            return event.type == KeyEventType::keyDown;
        });
        EXPECT_TRUE(std::all_of(down, events.end(), [](const KeyEvent& event) {
            return (event.flags & modifier_flags::option) != 0;
        }));
        keyboard.release(key::space);
        EXPECT_TRUE(hears(KeyEventType::keyUp));
    }
}

TEST_P(X11EventTapTest, TheApplicationKeepsTheFocusAndSeesTheModifierComeAndGo)
{
    install();
    EXPECT_TRUE(strikeIsHeard(keyboard, key::leftAlt, key::space));

    int altEvents = 0;
    for (const auto& event : witness.take()) {
        EXPECT_NE(event.happening, KeyWitness::Happening::focusOut);
        altEvents += event.keyCode == key::leftAlt;
    }
    EXPECT_EQ(altEvents, 2);
}

TEST_P(X11EventTapTest, AKeyWithoutMeaningIsPlayedSoThatAltIsNoLoneTap)
{
    install();
    EXPECT_TRUE(strikeIsHeard(keyboard, key::leftAlt, key::space));

    const auto keymap = readKeymap(keyboard.connection(), XCB_XKB_ID_USE_CORE_KBD);
    ASSERT_TRUE(keymap && keymap->neutralKey());
    EXPECT_THAT(witness.takePresses(), ElementsAre(key::leftAlt, *keymap->neutralKey()));
}

/// Keys that repeat soon and fast.
class X11EventTapRepeatTest : public X11EventTapTest {
protected:
    void SetUp() override { ASSERT_TRUE(run(QStringLiteral("xset"), words("r rate 50 100"))); }
    void TearDown() override
    {
        EXPECT_TRUE(run(QStringLiteral("xset"), words("r rate")));
        EXPECT_TRUE(setLayout(QStringLiteral("us")));
    }

    static QStringList words(const char* line) { return QString::fromLatin1(line).split(QLatin1Char(' ')); }

    /// A layout that uses all keys, so that none without meaning is left.
    void giveEveryKeyASymbol()
    {
        QStringList assignments;
        const auto keymap = readKeymap(keyboard.connection(), XCB_XKB_ID_USE_CORE_KBD);
        ASSERT_TRUE(keymap);
        for (const uint8_t empty : keymap->emptyKeys())
            assignments << QStringLiteral("-e") << QStringLiteral("keycode %1 = F35").arg(empty);
        ASSERT_TRUE(run(QStringLiteral("xmodmap"), assignments));
    }
};

INSTANTIATE_TEST_SUITE_P(Keyboards, X11EventTapRepeatTest,
                         ::testing::Values(TestKeyboard::Kind::synthetic, TestKeyboard::Kind::hardware),
                         nameOfKind);

TEST_P(X11EventTapRepeatTest, TheHeldChordDoesNotRepeat)
{
    install();
    keyboard.press(key::leftAlt);
    keyboard.press(key::space);
    runFor(300ms);
    EXPECT_EQ(count(KeyEventType::keyDown), 1);
    EXPECT_THAT(witness.takePresses(), Not(Contains(key::space)));
}

TEST_P(X11EventTapRepeatTest, WhereItMustRepeatTheRepeatsAreSwallowedToo)
{
    giveEveryKeyASymbol();
    install();
    keyboard.press(key::leftAlt);
    keyboard.press(key::space);
    EXPECT_TRUE(hears(KeyEventType::keyDown, 5)) << "the keyboard does not repeat";
    keyboard.release(key::space);
    EXPECT_TRUE(hears(KeyEventType::keyUp));
    runFor(50ms);
    EXPECT_EQ(count(KeyEventType::keyUp), 1);
    EXPECT_THAT(witness.takePresses(), ElementsAre(key::leftAlt));
}

TEST_P(X11EventTapTest, FurtherModifiersAndLocksDoNotPreventAMatch)
{
    install();
    for (const uint8_t extra : {key::leftControl, key::leftShift, key::leftSuper}) {
        keyboard.press(extra);
        EXPECT_TRUE(strikeIsHeard(keyboard, key::leftAlt, key::space)) << int{extra};
        keyboard.release(extra);
    }
    for (const uint8_t lock : {key::capsLock, key::numLock}) {
        keyboard.strike(lock);
        EXPECT_TRUE(strikeIsHeard(keyboard, key::leftAlt, key::space)) << int{lock};
        keyboard.strike(lock);
    }
    EXPECT_THAT(witness.takePresses(), Not(Contains(key::space)));
}

TEST_P(X11EventTapTest, TheKeyWithoutItsModifierPasses)
{
    install();
    keyboard.strike(key::space);
    keyboard.press(key::leftControl);
    keyboard.strike(key::space);
    keyboard.release(key::leftControl);
    EXPECT_THAT(witness.takePresses(), ElementsAre(key::space, key::leftControl, key::space));
    runFor(20ms);
    EXPECT_EQ(count(KeyEventType::keyDown), 0);
    EXPECT_EQ(count(KeyEventType::keyUp), 0);
}

TEST_P(X11EventTapTest, AQuickTapIsReportedWhole)
{
    install();
    for (int tapNumber = 1; tapNumber <= 50; ++tapNumber) {
        keyboard.press(key::leftAlt);
        keyboard.strike(key::space);
        keyboard.release(key::leftAlt);
        ASSERT_TRUE(hears(KeyEventType::keyUp, tapNumber));
    }
    EXPECT_EQ(count(KeyEventType::keyDown), 50);
    EXPECT_THAT(witness.takePresses(), Not(Contains(key::space)));
}

TEST_P(X11EventTapTest, AChordWithoutModifiersIsClaimedWhateverIsHeld)
{
    install(bareF5);
    keyboard.strike(key::f5);
    EXPECT_TRUE(hears(KeyEventType::keyUp));
    EXPECT_TRUE(strikeIsHeard(keyboard, key::leftShift, key::f5));
    EXPECT_THAT(witness.takePresses(), Not(Contains(key::f5)));
}

TEST_P(X11EventTapTest, ItComesBeforeACoreGrabOfTheSameChord)
{
    KeyWitness grabber;
    const auto root = keyboard.connection().root();
    xcb_grab_key(grabber.connection(), 0, root, XCB_MOD_MASK_1, key::space, XCB_GRAB_MODE_ASYNC,
                 XCB_GRAB_MODE_ASYNC);
    install();
    xcb_grab_key(grabber.connection(), 0, root, XCB_MOD_MASK_1 | XCB_MOD_MASK_SHIFT, key::space,
                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    witness.focus();
    (void)grabber.take();

    EXPECT_TRUE(strikeIsHeard(keyboard, key::leftAlt, key::space));
    keyboard.press(key::leftShift);
    EXPECT_TRUE(strikeIsHeard(keyboard, key::leftAlt, key::space));
    EXPECT_THAT(grabber.takePresses(), Not(Contains(key::space)));
}

TEST_P(X11EventTapTest, ItSurvivesAChangeOfTheLayout)
{
    install();
    for (const auto* layout : {"de", "fr", "us"}) {
        ASSERT_TRUE(setLayout(QLatin1String(layout)));
        EXPECT_TRUE(strikeIsHeard(keyboard, key::leftAlt, key::space)) << layout;
    }
}

TEST_P(X11EventTapTest, AnotherChordReplacesThePresentOne)
{
    install();
    ASSERT_TRUE(tap->watch(controlF6));
    EXPECT_TRUE(strikeIsHeard(keyboard, key::leftControl, key::f6));
    EXPECT_EQ(events.front().type, KeyEventType::flagsChanged);
    (void)witness.take();

    keyboard.press(key::leftAlt);
    keyboard.strike(key::space);
    EXPECT_THAT(witness.takePresses(), Contains(key::space));
}

TEST_P(X11EventTapTest, AKeyThatIsHeldWhileTheChordChangesIsStillReportedUp)
{
    install();
    keyboard.press(key::leftAlt);
    keyboard.press(key::space);
    ASSERT_TRUE(hears(KeyEventType::keyDown));
    ASSERT_TRUE(tap->watch(controlF6));
    keyboard.release(key::space);
    ASSERT_TRUE(hears(KeyEventType::keyUp));
    EXPECT_EQ(events.back().keyCode, virtual_key::space);
}

TEST_P(X11EventTapTest, ATapThatIsOffLeavesTheChordToOthers)
{
    install();
    tap->setEnabled(false);
    const auto other = create(optionSpace);
    EXPECT_NE(other, nullptr);
    keyboard.press(key::leftAlt);
    keyboard.strike(key::space);
    EXPECT_THAT(witness.takePresses(), Contains(key::space));
    keyboard.release(key::leftAlt);
    runFor(20ms);
    EXPECT_THAT(events, IsEmpty());

    tap->setEnabled(true);
    EXPECT_TRUE(strikeIsHeard(keyboard, key::leftAlt, key::space));
}

class X11EventTapRefusalTest : public TapFixture {};

TEST_F(X11EventTapRefusalTest, AChordThatAProgramOfTheSameKindHoldsIsRefusedByName)
{
    install();
    EXPECT_EQ(create(optionSpace), nullptr);
    EXPECT_TRUE(log.contains(QStringLiteral("another program holds the hotkey Option+key 49")));
}

TEST_F(X11EventTapRefusalTest, AnAttemptThatIsMadeAgainAndAgainIsLoggedOnceForEachReason)
{
    install();
    const auto refusals = [this] {
        const auto lines = log.lines();
        return std::count_if(lines.begin(), lines.end(),
                             [](const QString& line) { return line.contains(QStringLiteral("the hotkey")); });
    };
    EXPECT_EQ(create(optionSpace), nullptr);
    EXPECT_EQ(create(optionSpace), nullptr);
    EXPECT_EQ(refusals(), 1);
    EXPECT_EQ(create(KeyChord{63, 0}), nullptr);
    EXPECT_EQ(create(optionSpace), nullptr);
    EXPECT_EQ(refusals(), 3);
}

TEST_F(X11EventTapRefusalTest, AGrabOnTheMasterKeyboardDoesNotHinder)
{
    KeyWitness grabber;
    TestKeyboard keyboard(TestKeyboard::Kind::synthetic);
    const auto masks = masksContaining(x11_mask::alt);
    const uint32_t wanted = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS;
    const auto version = owned(xcb_input_xi_query_version_reply(
        grabber.connection(), xcb_input_xi_query_version(grabber.connection(), 2, 2), nullptr));
    ASSERT_TRUE(version);
    const auto cookie = xcb_input_xi_passive_grab_device(
        grabber.connection(), XCB_CURRENT_TIME, keyboard.connection().root(), XCB_NONE, key::space,
        XCB_INPUT_DEVICE_ALL_MASTER, static_cast<uint16_t>(masks.size()), 1, XCB_INPUT_GRAB_TYPE_KEYCODE,
        XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_OWNER_NO_OWNER, &wanted,
        masks.data());
    const auto reply = owned(xcb_input_xi_passive_grab_device_reply(grabber.connection(), cookie, nullptr));
    ASSERT_TRUE(reply && reply->num_modifiers == 0);

    install();
    EXPECT_TRUE(strikeIsHeard(keyboard, key::leftAlt, key::space));
}

TEST_F(X11EventTapRefusalTest, AChordThatIsPartlyTakenIsWatchedAndTheLogSaysSo)
{
    const auto connection = X11Connection::open(log);
    ASSERT_TRUE(connection);
    ChordGrabs part(*connection, {key::space, x11_mask::alt | x11_mask::shift});
    ASSERT_EQ(part.claim(), ChordGrabs::Outcome::everything);

    install();
    EXPECT_TRUE(log.contains(QStringLiteral("a part of the hotkey Option+key 49")));
    TestKeyboard keyboard(TestKeyboard::Kind::synthetic);
    EXPECT_TRUE(strikeIsHeard(keyboard, key::leftAlt, key::space));
}

TEST_F(X11EventTapRefusalTest, AKeyThatXCannotNameIsRefused)
{
    EXPECT_EQ(create(KeyChord{63, 0}), nullptr);
    EXPECT_TRUE(log.contains(QStringLiteral("the hotkey key 63 has no key here")));
}

} // namespace
} // namespace corvandi::testing
