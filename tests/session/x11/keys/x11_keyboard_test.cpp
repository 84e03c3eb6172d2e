#include "session/x11/keys/typing_fixture.h"

#include "session/x11/keys/hands_off.h"
#include "session/x11/keys/key_witness.h"
#include "session/x11/keys/keyboard_state.h"
#include "session/x11/keys/keymap_reader.h"
#include "session/x11/keys/watched_chord.h"
#include "session/x11/keys/x11_event_tap.h"
#include "session/x11/keys/x11_key_event_source.h"

#include <QTemporaryDir>

#include <random>

namespace corvandi::testing {
namespace {

using namespace std::chrono_literals;

/// `count` characters, drawn evenly from plain words, accents, punctuation of the printers, Chinese and
/// pictures: 60 of them are on no American keyboard.
QString mixedText(int count)
{
    const QString plain =
        QStringLiteral("The quick brown fox, jumps over 1 lazy dog? Yes! (No:) \"'@#$%&*+-/=\n\t");
    const std::u32string extras = U"äöüßÄÖÜéèêàçñøåœæ„“”‚‘’«»–—…€£§°²½×·¿¡"
                                  U"你好世界中文字我们今天很高兴见到大家\U0001F600\U0001F389\U0001F44D";
    std::mt19937 random(7);
    QString text;
    for (int i = 0; i < count; ++i) {
        if (random() % 2)
            text += plain[static_cast<qsizetype>(random() % static_cast<size_t>(plain.size()))];
        else
            text += QString::fromUcs4(&extras[random() % extras.size()], 1);
    }
    return text;
}

class X11KeyboardTest : public TypingFixture {};

TEST_F(X11KeyboardTest, TwoThousandMixedCharactersArriveExactly)
{
    const QString text = mixedText(2000);
    ASSERT_TRUE(type(text));
    EXPECT_TRUE(target.comesToHold(text));
}

TEST_F(X11KeyboardTest, OneInsertionAfterTheOtherArrivesExactly)
{
    QString expected;
    for (int i = 0; i < 10; ++i) {
        const QString text = QStringLiteral("Satz %1: Größe „%2“ … ").arg(i).arg(QChar(0x4E00 + i));
        ASSERT_TRUE(type(text));
        expected += text;
    }
    EXPECT_TRUE(target.comesToHold(expected));
}

TEST_F(X11KeyboardTest, ALongDictationArrivesWholeAgainAndAgain)
{
    const QString text = mixedText(800);
    for (int i = 0; i < 5; ++i) {
        ASSERT_TRUE(type(text));
        EXPECT_TRUE(target.comesToHold(text));
        target.clear();
    }
}

class X11KeyboardLayoutTest : public X11KeyboardTest, public ::testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(Layouts, X11KeyboardLayoutTest, ::testing::Values("us", "de", "fr", "ru", "gr"),
                         [](const auto& layout) { return std::string(layout.param); });

TEST_P(X11KeyboardLayoutTest, AMixedTextArrivesExactly)
{
    ASSERT_TRUE(setLayout(QLatin1String(GetParam())));
    const QString text = QStringLiteral("Zwölf Boxkämpfer jagen Viktor quer über den Sylter Deich; "
                                        "Voilà l'été, ça va? {[@\\~|]} <a> 100 % € ^ ` ´\n") +
                         QStringLiteral("Αθήνα, Привет!");
    ASSERT_TRUE(type(text));
    EXPECT_TRUE(target.comesToHold(text));
}

TEST_F(X11KeyboardTest, ASecondGroupOfTheLayoutIsTypedInAsItStands)
{
    ASSERT_TRUE(run(QStringLiteral("setxkbmap"), {QStringLiteral("us,de")}));
    xcb_xkb_latch_lock_state(person.connection().get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, 1, 0, 0, 0);
    person.connection().sync();
    const QString text = QStringLiteral("yz YZ äöü @€ {x}");
    ASSERT_TRUE(type(text));
    EXPECT_TRUE(target.comesToHold(text));
    xcb_xkb_latch_lock_state(person.connection().get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, 0, 0, 0, 0);
    person.connection().sync();
}

TEST_F(X11KeyboardTest, ALayoutChangeBetweenTwoInsertionsDoesNoHarm)
{
    const QString text = QStringLiteral("Größe … 你好 ");
    ASSERT_TRUE(type(text));
    EXPECT_TRUE(target.comesToHold(text));
    ASSERT_TRUE(setLayout(QStringLiteral("fr")));
    ASSERT_TRUE(type(text));
    EXPECT_TRUE(target.comesToHold(text + text));
}

TEST_F(X11KeyboardTest, CapsLockIsOffWhileTypingAndOnAgainAfterwards)
{
    person.strike(key::capsLock);
    ASSERT_TRUE(type(QStringLiteral("Hello wörld")));
    EXPECT_TRUE(target.comesToHold(QStringLiteral("Hello wörld")));
    const auto state = readState(person.connection());
    ASSERT_TRUE(state);
    EXPECT_EQ(state->locked, x11_mask::lock);
    person.strike(key::capsLock);
}

/// Keys of the one connection that may act meanwhile: those of real keyboards come at any time.
TEST_F(X11KeyboardTest, WhatHandsDoWhileKeysArePlayedIsKeptOffAndTold)
{
    const auto connection = X11Connection::open(log);
    ASSERT_TRUE(connection);
    const auto keyboards = keyboardsOfHands(*connection, readState(*connection)->device);
    ASSERT_FALSE(keyboards.empty());
    {
        HandsOff handsOff(*connection, keyboards);
        fakeDeviceKey(*connection, keyboards.front(), key::a, KeyDirection::down);
        fakeKey(*connection, key::b, KeyDirection::down);
        fakeKey(*connection, key::b, KeyDirection::up);
        fakeDeviceKey(*connection, keyboards.front(), key::a, KeyDirection::up);
        const auto report = handsOff.end();
        ASSERT_TRUE(report);
        ASSERT_EQ(report->caught.size(), 2U);
        EXPECT_EQ(report->caught[0].keyCode, key::a);
        EXPECT_EQ(report->caught[0].direction, KeyDirection::down);
        EXPECT_EQ(report->caught[1].direction, KeyDirection::up);
    }
    person.strike(key::space);
    EXPECT_TRUE(target.comesToHold(QStringLiteral("b ")));
}

TEST_F(X11KeyboardTest, NumLockStaysAndChangesNothing)
{
    person.strike(key::numLock);
    ASSERT_TRUE(type(QStringLiteral("Hello 123 ½")));
    EXPECT_TRUE(target.comesToHold(QStringLiteral("Hello 123 ½")));
    EXPECT_EQ(readState(person.connection())->locked, x11_mask::numLock);
    person.strike(key::numLock);
}

class X11KeyboardHeldModifierTest
    : public X11KeyboardTest,
      public ::testing::WithParamInterface<std::tuple<int, TestKeyboard::Kind>> {};

INSTANTIATE_TEST_SUITE_P(
    Modifiers, X11KeyboardHeldModifierTest,
    ::testing::Combine(::testing::Values(key::leftShift, key::leftControl, key::leftAlt, key::leftSuper),
                       ::testing::Values(TestKeyboard::Kind::synthetic, TestKeyboard::Kind::hardware)));

TEST_P(X11KeyboardHeldModifierTest, AModifierThatIsStillHeldDoesNotGetIntoTheText)
{
    const auto [modifier, kind] = GetParam();
    TestKeyboard held(kind);
    held.press(static_cast<uint8_t>(modifier));
    const QString text = QStringLiteral("keep this, größe too");
    ASSERT_TRUE(type(text));
    EXPECT_TRUE(target.comesToHold(text));
    held.release(static_cast<uint8_t>(modifier));
    // The menu bar has not been opened by it either: the next text arrives as well.
    ASSERT_TRUE(type(text));
    EXPECT_TRUE(target.comesToHold(text + text));
    EXPECT_EQ(readState(person.connection())->held, x11_mask::none);
}

TEST_F(X11KeyboardTest, MoreCharactersThanThereAreSpareKeysAreRefusedAndNothingIsTyped)
{
    QString text = QStringLiteral("plain ");
    for (char16_t i = 0; i < 200; ++i)
        text += QChar(char16_t(0x4E00 + i));
    EXPECT_EQ(keyboard.createSource(text), nullptr);
    runFor(50ms);
    EXPECT_EQ(target.text(), QString());
    ASSERT_TRUE(type(QStringLiteral("plain 你")));
    EXPECT_TRUE(target.comesToHold(QStringLiteral("plain 你")));
}

TEST_F(X11KeyboardTest, WhatNoKeyboardTypesIsLeftOutAndTheRestArrives)
{
    QString text = QStringLiteral("a");
    text += QChar(0);
    text += QChar(0xD83D);
    text += QStringLiteral("b");
    text += QChar(0xDE00);
    text += QChar(0x1B);
    text += QStringLiteral("c\r\nd");
    ASSERT_TRUE(type(text));
    EXPECT_TRUE(target.comesToHold(QStringLiteral("abc\nd")));
}

TEST_F(X11KeyboardTest, CharactersOfAWatchedChordAreTypedAnotherWay)
{
    X11EventTapFactory taps(log, watched);
    int presses = 0;
    const auto tap = taps.create(KeyChord{virtual_key::space, 0}, [&](const KeyEvent&) {
        ++presses;
        return TapVerdict::swallow;
    });
    ASSERT_NE(tap, nullptr);
    tap->setEnabled(true);
    ASSERT_TRUE(type(QStringLiteral("one two three")));
    EXPECT_TRUE(target.comesToHold(QStringLiteral("one two three")));
    EXPECT_EQ(presses, 0);
}

TEST_F(X11KeyboardTest, TheNeutralKeyOfATapNeverTypesAnything)
{
    QString text;
    for (char16_t i = 0; i < 72; ++i)
        text += QChar(char16_t(0x4E00 + i));
    ASSERT_TRUE(type(text));
    EXPECT_TRUE(target.comesToHold(text));
    {
        X11EventTapFactory taps(log, watched);
        int releases = 0;
        const auto tap =
            taps.create(KeyChord{virtual_key::space, modifier_flags::shift}, [&](const KeyEvent& event) {
                releases += event.type == KeyEventType::keyUp;
                return TapVerdict::swallow;
            });
        ASSERT_NE(tap, nullptr);
        tap->setEnabled(true);
        person.press(key::leftShift);
        person.strike(key::space);
        person.release(key::leftShift);
        ASSERT_TRUE(waitUntil([&] { return releases == 1; }));
    }
    person.strike(key::a);
    EXPECT_TRUE(target.comesToHold(text + QStringLiteral("a")));
}

TEST_F(X11KeyboardTest, TheLayoutIsAsBeforeWhenTheKeyboardHasGone)
{
    const auto before = readKeymap(person.connection(), XCB_XKB_ID_USE_CORE_KBD);
    {
        X11Keyboard other(log, watched, [] { return PasteShortcut::controlV; });
        const auto source = other.createSource(QStringLiteral("äöü 你好"));
        ASSERT_NE(source, nullptr);
        const auto between = readKeymap(person.connection(), XCB_XKB_ID_USE_CORE_KBD);
        EXPECT_LT(between->emptyKeys().size(), before->emptyKeys().size());
    }
    const auto after = readKeymap(person.connection(), XCB_XKB_ID_USE_CORE_KBD);
    EXPECT_EQ(after->emptyKeys(), before->emptyKeys());
}

TEST_F(X11KeyboardTest, KeyboardsWithDifferentLayoutsKeepThem)
{
    const auto devices = slaveKeyboards(person.connection());
    const auto hardware =
        std::find_if(devices.begin(), devices.end(), [](const auto& d) { return !d.isXtest; });
    ASSERT_NE(hardware, devices.end());
    ASSERT_TRUE(run(QStringLiteral("setxkbmap"),
                    {QStringLiteral("-device"), QString::number(hardware->id), QStringLiteral("de")}));
    const auto before = readKeymap(person.connection(), hardware->id);

    const QString text = QStringLiteral("yz äöü 你好");
    ASSERT_TRUE(type(text));
    EXPECT_TRUE(target.comesToHold(text));
    const auto after = readKeymap(person.connection(), hardware->id);
    for (int code = before->firstKeyCode(); code <= before->lastKeyCode(); ++code) {
        const auto keyCode = static_cast<uint8_t>(code);
        if (before->key(keyCode).isEmpty())
            continue;
        EXPECT_EQ(after->key(keyCode).symbols, before->key(keyCode).symbols) << code;
    }
}

class X11KeyboardShortcutTest : public X11KeyboardTest {
protected:
    void strike(uint16_t virtualKey, uint64_t flags)
    {
        const auto source = keyboard.createSource(QString());
        ASSERT_NE(source, nullptr);
        auto down = source->makeKeyEvent(virtualKey, KeyDirection::down);
        auto up = source->makeKeyEvent(virtualKey, KeyDirection::up);
        ASSERT_TRUE(down && up);
        down->flags = flags;
        up->flags = flags;
        source->post(*down);
        source->post(*up);
    }
};

TEST_F(X11KeyboardShortcutTest, ThePasteShortcutIsControlV)
{
    strike(virtual_key::v, modifier_flags::command);
    EXPECT_TRUE(target.says("shortcut Ctrl+V"));
}

TEST_F(X11KeyboardShortcutTest, ThePasteShortcutOfATerminalHasShiftToo)
{
    pasteShortcut = PasteShortcut::controlShiftV;
    strike(virtual_key::v, modifier_flags::command);
    EXPECT_TRUE(target.says("shortcut Ctrl+Shift+V"));
}

TEST_F(X11KeyboardShortcutTest, WhereThereIsNoPasteShortcutItsEventIsNotMade)
{
    pasteShortcut = PasteShortcut::none;
    const auto source = keyboard.createSource(QString());
    ASSERT_NE(source, nullptr);
    EXPECT_FALSE(source->makeKeyEvent(virtual_key::v, KeyDirection::down));
    EXPECT_TRUE(source->makeKeyEvent(virtual_key::none, KeyDirection::down));
}

TEST_F(X11KeyboardShortcutTest, ThePasteShortcutFollowsTheLetter)
{
    ASSERT_TRUE(setLayout(QStringLiteral("us"), QStringLiteral("dvorak")));
    strike(virtual_key::v, modifier_flags::command);
    EXPECT_TRUE(target.says("shortcut Ctrl+V"));
}

TEST_F(X11KeyboardShortcutTest, OtherKeysBearTheFlagsTheyAreGiven)
{
    strike(0, modifier_flags::control | modifier_flags::option);
    EXPECT_TRUE(target.says("shortcut Ctrl+Alt+A"));
    strike(0, 0);
    EXPECT_TRUE(target.comesToHold(QStringLiteral("a")));
}

TEST_F(X11KeyboardShortcutTest, AKeyThatXCannotNameIsNoEvent)
{
    const auto source = keyboard.createSource(QString());
    ASSERT_NE(source, nullptr);
    EXPECT_FALSE(source->makeKeyEvent(63, KeyDirection::down));
}

TEST_F(X11KeyboardShortcutTest, AKeyLeftDownIsReleasedWithItsSource)
{
    {
        const auto source = keyboard.createSource(QString());
        source->post({virtual_key::v, KeyDirection::down, modifier_flags::command, {}});
    }
    EXPECT_TRUE(target.says("shortcut Ctrl+V"));
    EXPECT_EQ(readState(person.connection())->held, x11_mask::none);
}

class X11KeyboardFreeKeysTest : public ::testing::Test {
protected:
    std::unique_ptr<Registration> wait()
    {
        return keyboard.whenKeysAreFree([this] { ++calls; });
    }

    RecordingLog log;
    WatchedChord watched;
    X11Keyboard keyboard{log, watched, [] { return PasteShortcut::controlV; }};
    TestKeyboard person{TestKeyboard::Kind::hardware};
    int calls = 0;
};

TEST_F(X11KeyboardFreeKeysTest, LocksAndOrdinaryKeysDoNotCount)
{
    person.strike(key::numLock);
    person.strike(key::capsLock);
    person.press(key::a);
    const auto registration = wait();
    EXPECT_EQ(calls, 1);
    person.strike(key::numLock);
    person.strike(key::capsLock);
}

TEST(X11KeyboardWithoutServerTest, NoSourceIsMadeAndNobodyWaits)
{
    const QByteArray before = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":12345");
    RecordingLog log;
    WatchedChord watched;
    X11Keyboard keyboard(log, watched, [] { return PasteShortcut::controlV; });
    qputenv("DISPLAY", before);
    EXPECT_EQ(keyboard.createSource(QStringLiteral("a")), nullptr);
    int calls = 0;
    const auto registration = keyboard.whenKeysAreFree([&] { ++calls; });
    EXPECT_EQ(calls, 1);
}

/// A terminal whose program writes what it reads into a file.
TEST(X11KeyboardTerminalTest, AMixedTextArrivesInXterm)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("typed"));
    QProcess xterm;
    xterm.start(QStringLiteral("xterm"),
                {QStringLiteral("-u8"), QStringLiteral("-e"),
                 QStringLiteral("stty raw -echo; : > '%1.ready'; cat > '%1'").arg(path)});
    ASSERT_TRUE(waitUntil([&] { return QFile::exists(path + QStringLiteral(".ready")); }));

    RecordingLog log;
    WatchedChord watched;
    X11Keyboard keyboard(log, watched, [] { return PasteShortcut::none; });
    const QString text = mixedText(2000).remove(QLatin1Char('\t'));
    const auto hasFocus = [&] {
        const auto source = keyboard.createSource(QString());
        postText(*source, QStringLiteral("."));
        QFile file(path);
        return file.open(QIODevice::ReadOnly) && file.size() > 0;
    };
    ASSERT_TRUE(waitUntil(hasFocus));
    {
        const auto source = keyboard.createSource(text);
        ASSERT_NE(source, nullptr);
        postText(*source, text);
    }
    const QByteArray expected = QString(text).replace(QLatin1Char('\n'), QLatin1Char('\r')).toUtf8();
    QByteArray typed;
    EXPECT_TRUE(waitUntil([&] {
        QFile file(path);
        typed = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        while (typed.startsWith(".."))
            typed.remove(0, 1);
        return typed == '.' + expected;
    })) << typed.size()
        << " bytes of " << expected.size();
    xterm.kill();
    xterm.waitForFinished();
}

} // namespace
} // namespace corvandi::testing
