#include "session/x11/keys/keymap_writer.h"
#include "session/x11/keys/keymaps.h"
#include "session/x11/keys/spare_keys.h"
#include "session/x11/keys/watched_chord.h"

#include <gmock/gmock.h>

#include <array>

namespace corvandi::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Two spare keys with four levels each.
constexpr char16_t roomForEight = 8;

std::u32string foreign(size_t count)
{
    std::u32string characters;
    for (size_t i = 0; i < count; ++i)
        characters.push_back(U'\u4E00' + static_cast<char32_t>(i));
    return characters;
}

class SpareKeysTest : public ::testing::Test {
protected:
    /// Puts characters onto the keyboard, as after a successful write.
    [[nodiscard]] bool put(const std::u32string& characters)
    {
        spare.reconcile(keymap);
        const auto planned = spare.withCharacters(keymap, characters);
        if (!planned)
            return false;
        spare.adopt(keymap, *planned);
        keymap = *planned;
        return true;
    }

    [[nodiscard]] std::optional<Stroke> find(char32_t character) const
    {
        return CharacterMap(keymap, {}).find(character);
    }

    Keymap keymap = smallKeymap();
    SpareKeys spare;
};

TEST_F(SpareKeysTest, CharactersGoOntoEmptyKeysWithoutModifiersFirst)
{
    ASSERT_TRUE(put(U"é你"));
    EXPECT_EQ(find(U'é'), (Stroke{made::empty, x11_mask::none}));
    EXPECT_EQ(find(U'你'), (Stroke{made::empty + 1, x11_mask::none}));
}

TEST_F(SpareKeysTest, AllLevelsAreUsed)
{
    const std::u32string characters = foreign(roomForEight);
    ASSERT_TRUE(put(characters));
    for (const char32_t character : characters)
        EXPECT_TRUE(find(character));
    EXPECT_EQ(find(characters.back()), (Stroke{made::empty + 1, x11_mask::shift | x11_mask::level3}));
}

TEST_F(SpareKeysTest, MoreThanThereIsRoomForIsRefusedWhole)
{
    EXPECT_FALSE(put(foreign(roomForEight + 1)));
    EXPECT_TRUE(put(foreign(roomForEight)));
}

TEST_F(SpareKeysTest, WithoutAltGrAKeyBearsTwoCharacters)
{
    keymap = keymapWithoutLevel3();
    EXPECT_TRUE(put(foreign(4)));
    EXPECT_FALSE(put(U"x\u00E9"));
}

TEST_F(SpareKeysTest, TheNeutralKeyStaysEmpty)
{
    ASSERT_TRUE(put(foreign(roomForEight)));
    EXPECT_EQ(keymap.neutralKey(), made::neutral);
    EXPECT_EQ(smallKeymap().neutralKey(), made::neutral);
}

TEST_F(SpareKeysTest, LaterCharactersJoinTheEarlierOnes)
{
    ASSERT_TRUE(put(foreign(3)));
    const auto first = find(U'\u4E00');
    ASSERT_TRUE(put(U"é"));
    EXPECT_EQ(find(U'\u4E00'), first);
    EXPECT_TRUE(find(U'é'));
    EXPECT_FALSE(put(foreign(roomForEight))) << "four of them are used";
}

TEST_F(SpareKeysTest, ANewLayoutTakesEverythingAway)
{
    ASSERT_TRUE(put(foreign(roomForEight)));
    keymap = smallKeymap();
    EXPECT_TRUE(put(foreign(roomForEight)));
    EXPECT_TRUE(find(U'\u4E00'));
}

TEST_F(SpareKeysTest, AKeyThatANewLayoutUsesIsNoLongerOurs)
{
    ASSERT_TRUE(put(U"éè"));
    keymap = smallKeymap();
    keymap.key(made::empty) = keymap.key(made::a);
    ASSERT_TRUE(put(U"ê"));
    EXPECT_EQ(keymap.key(made::empty), smallKeymap().key(made::a));
    EXPECT_EQ(spare.withoutCharacters(keymap).key(made::empty), smallKeymap().key(made::a));
}

TEST_F(SpareKeysTest, AllIsTakenBackInTheEnd)
{
    ASSERT_TRUE(put(foreign(5)));
    const Keymap cleared = spare.withoutCharacters(keymap);
    EXPECT_EQ(cleared.emptyKeys(), smallKeymap().emptyKeys());
    EXPECT_THAT(changedKeys(keymap, cleared), ElementsAre(made::empty, made::empty + 1));
    EXPECT_THAT(changedKeys(keymap, keymap), IsEmpty());
}

TEST_F(SpareKeysTest, AKeyboardWithoutEmptyKeysHasNoRoom)
{
    for (const uint8_t empty : smallKeymap().emptyKeys())
        keymap.key(empty) = keymap.key(made::a);
    EXPECT_FALSE(put(U"é"));
    EXPECT_FALSE(keymap.neutralKey());
}

TEST(KeySymbols, AKeyIsAHeldModifierByItsMaskOrByItsSymbol)
{
    const Keymap keymap = smallKeymap();
    EXPECT_TRUE(keymap.key(made::shift).isHeldModifier());
    EXPECT_TRUE(keymap.key(made::control).isHeldModifier());
    EXPECT_FALSE(keymap.key(made::numLock).isHeldModifier());
    EXPECT_FALSE(keymap.key(made::a).isHeldModifier());
    KeySymbols altGr = keymap.key(made::level3);
    altGr.modifiers = x11_mask::none;
    EXPECT_TRUE(altGr.isHeldModifier());
}

TEST(RangesToWrite, KeysThatAreTheSameEverywhereAreBridged)
{
    const Keymap wanted = smallKeymap();
    const std::array keyboards{smallKeymap(), smallKeymap()};
    EXPECT_THAT(rangesToWrite({made::a, made::space, made::empty}, wanted, keyboards),
                ElementsAre(KeyRange{made::a, made::empty}));
    EXPECT_THAT(rangesToWrite({}, wanted, keyboards), IsEmpty());
}

TEST(RangesToWrite, AKeyThatDiffersSomewhereIsLeftAlone)
{
    const Keymap wanted = smallKeymap();
    std::array keyboards{smallKeymap(), smallKeymap()};
    keyboards[1].key(made::one).symbols[0] = '7';
    EXPECT_THAT(rangesToWrite({made::a, made::space, made::empty}, wanted, keyboards),
                ElementsAre(KeyRange{made::a, made::a}, KeyRange{made::space, made::empty}));
}

} // namespace
} // namespace corvandi::testing
