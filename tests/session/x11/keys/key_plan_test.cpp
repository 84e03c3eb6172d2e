#include "session/x11/keys/key_plan.h"
#include "session/x11/keys/keymaps.h"
#include "session/x11/keys/spare_keys.h"
#include "session/x11/keys/watched_chord.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

TEST(TypedText, OrdinaryCharactersAreThemselves)
{
    EXPECT_EQ(typedCharacters(u"aÄ“你\u00A0"), U"aÄ“你\u00A0");
    EXPECT_EQ(typedCharacters(u""), U"");
}

TEST(TypedText, ASurrogatePairIsOneCharacter)
{
    EXPECT_EQ(typedCharacters(u"x\U0001F600y\U0010FFFD"), U"x\U0001F600y\U0010FFFD");
}

TEST(TypedText, EveryLineBreakIsOneReturn)
{
    EXPECT_EQ(typedCharacters(u"a\nb\rc\r\nd\n\re"), U"a\nb\nc\nd\n\ne");
}

TEST(TypedText, WhatNoKeyboardTypesIsLeftOut)
{
    const char16_t units[] = {u'a', 0, 0x1B, 0x7F, 0x85, 0xD83D, u'b', 0xDE00, 0xD83D, 0xFFFF, 0xFDD0, u'c'};
    EXPECT_EQ(typedCharacters({units, std::size(units)}), U"abc");
    EXPECT_EQ(typedCharacters(u"a\tb"), U"a\tb");
}

TEST(TypedText, AHighSurrogateAtTheEndIsLeftOut)
{
    const char16_t units[] = {u'a', 0xD83D};
    EXPECT_EQ(typedCharacters({units, std::size(units)}), U"a");
}

} // namespace
} // namespace corvandi

namespace corvandi::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr KeyAction down(uint8_t key)
{
    return {key, KeyDirection::down};
}

constexpr KeyAction up(uint8_t key)
{
    return {key, KeyDirection::up};
}

class CharacterMapTest : public ::testing::Test {
protected:
    Keymap keymap = smallKeymap();
    CharacterMap characters{keymap, {}};
};

TEST_F(CharacterMapTest, FindsCharactersOnTheirLevels)
{
    EXPECT_EQ(characters.find(U'a'), (Stroke{made::a, x11_mask::none}));
    EXPECT_EQ(characters.find(U'!'), (Stroke{made::one, x11_mask::shift}));
    EXPECT_EQ(characters.find(U'@'), (Stroke{made::b, x11_mask::level3}));
    EXPECT_EQ(characters.find(U'\n'), (Stroke{made::enter, x11_mask::none}));
    EXPECT_EQ(characters.find(U'\t'), (Stroke{made::tab, x11_mask::none}));
}

TEST_F(CharacterMapTest, TakesTheStrokeWithTheFewestModifiers)
{
    keymap.key(made::b).symbols[2] = 'a';
    EXPECT_EQ(CharacterMap(keymap, {}).find(U'a'), (Stroke{made::a, x11_mask::none}));
}

TEST_F(CharacterMapTest, LeavesTheKeypadAndDeadKeysOut)
{
    const CharacterMap withNumLock(keymap, {0, x11_mask::numLock, {}});
    EXPECT_EQ(withNumLock.find(U'1'), (Stroke{made::one, x11_mask::none}));
    EXPECT_FALSE(withNumLock.find(U'\u00B4'));
    EXPECT_FALSE(withNumLock.find(U'\u0301'));
}

TEST_F(CharacterMapTest, ReachesNothingOnAltGrWhereThereIsNoSuchKey)
{
    EXPECT_FALSE(CharacterMap(keymapWithoutLevel3(), {}).find(U'@'));
}

TEST_F(CharacterMapTest, LooksAtTheGroupThatIsInUse)
{
    KeySymbols& key = keymap.key(made::a);
    key.types[1] = key.types[0];
    key.groupInfo = 2;
    key.symbols = {'a', 'A', 'q', 'Q'};
    const CharacterMap second(keymap, {1, x11_mask::none, {}});
    EXPECT_EQ(second.find(U'q'), (Stroke{made::a, x11_mask::none}));
    EXPECT_FALSE(second.find(U'a'));
    EXPECT_TRUE(second.find(U'b')) << "a key with one group has it in every group";
}

TEST_F(CharacterMapTest, AvoidsTheWatchedChord)
{
    const CharacterMap bare(keymap, {0, x11_mask::none, X11Chord{made::a, x11_mask::none}});
    EXPECT_FALSE(bare.find(U'a'));
    EXPECT_FALSE(bare.find(U'A')) << "further modifiers don't prevent a match";
    const CharacterMap withShift(keymap, {0, x11_mask::none, X11Chord{made::a, x11_mask::shift}});
    EXPECT_TRUE(withShift.find(U'a'));
    EXPECT_FALSE(withShift.find(U'A'));
}

TEST_F(CharacterMapTest, NamesEachMissingCharacterOnce)
{
    EXPECT_EQ(characters.missing(U"aéb你é!"), U"é你");
    EXPECT_EQ(characters.missing(U"ab\n"), U"");
}

TEST(EffectiveGroup, IsWhatTheKeySaysForGroupsThatItHasNot)
{
    KeySymbols key;
    key.groupInfo = 2;
    EXPECT_EQ(key.effectiveGroup(1), 1);
    EXPECT_EQ(key.effectiveGroup(3), 1) << "wraps";
    key.groupInfo = 0x42;
    EXPECT_EQ(key.effectiveGroup(2), 1) << "clamps";
    key.groupInfo = 0x82;
    EXPECT_EQ(key.effectiveGroup(3), 0) << "redirects";
}

class KeyPlanTest : public CharacterMapTest {
protected:
    [[nodiscard]] std::vector<KeyAction> plan(const std::u32string& text) const
    {
        return planText(text, characters, keymap);
    }
};

TEST_F(KeyPlanTest, EveryCharacterIsAKeyDownAndUp)
{
    EXPECT_THAT(plan(U"ab"), ElementsAre(down(made::a), up(made::a), down(made::b), up(made::b)));
    EXPECT_THAT(plan(U""), IsEmpty());
}

TEST_F(KeyPlanTest, AModifierStaysDownWhileItIsNeeded)
{
    EXPECT_THAT(plan(U"A!a"), ElementsAre(down(made::shift), down(made::a), up(made::a), down(made::one),
                                          up(made::one), up(made::shift), down(made::a), up(made::a)));
}

TEST_F(KeyPlanTest, OneModifierGivesWayToAnother)
{
    EXPECT_THAT(plan(U"A@"), ElementsAre(down(made::shift), down(made::a), up(made::a), up(made::shift),
                                         down(made::level3), down(made::b), up(made::b), up(made::level3)));
}

TEST_F(KeyPlanTest, WhatIsNotOnTheKeyboardIsLeftOut)
{
    EXPECT_THAT(plan(U"a你a"), ElementsAre(down(made::a), up(made::a), down(made::a), up(made::a)));
}

TEST_F(KeyPlanTest, ModifierKeysAreThoseOfTheMask)
{
    EXPECT_THAT(modifierKeys(x11_mask::control | x11_mask::shift, keymap),
                ElementsAre(made::control, made::shift));
    EXPECT_THAT(modifierKeys(x11_mask::super, keymap), IsEmpty());
}

} // namespace
} // namespace corvandi::testing
